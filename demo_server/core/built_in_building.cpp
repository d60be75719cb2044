#include "demo_server/core/built_in_building.h"

#include "demo_server/core/payload.h"
#include "demo_server/core/records.h"

namespace orvc::demo {
namespace {

constexpr std::uint32_t kMinute = 60;
constexpr std::uint32_t kHour = 60 * kMinute;
constexpr std::uint32_t kDay = 24 * kHour;

constexpr KSMac mac(std::uint8_t last) {
    return {0x02, 0x4B, 0x53, 0x10, 0x00, last};
}

// Stations, numbered by the last byte of their address.
enum Station : std::uint8_t {
    kMainEntrance = 1,
    kLobby,
    kReception,
    kLiftA,
    kLiftB,
    kCarParkEntry,
    kCarParkExit,
    kCarParkLevel1,
    kCarParkLevel2,
    kDeliveryGate,
    kStaffEntrance,
    kNursesStation1,
    kNursesStation2,
    kWard1,
    kWard2,
    kTreatment,
    kPharmacy,
    kCafeteria,
    kServerRoom,
    kPlantRoom,
    kRoof,
    kSecurityDesk,
    kNightDesk,
    kUnnamed,
};

constexpr const char* kStationNames[] = {
    "Main entrance",    "Lobby",          "Reception",      "Lift A",
    "Lift B",           "Car park entry", "Car park exit",  "Car park level 1",
    "Car park level 2", "Delivery gate",  "Staff entrance", "Nurses station 1",
    "Nurses station 2", "Ward 1",         "Ward 2",         "Treatment room 3",
    "Pharmacy hatch",   "Cafeteria",      "Server room",    "Plant room",
    "Roof access",      "Security desk",  "Night desk",     "",
};

struct GroupPlan {
    const char* key;
    std::vector<std::uint8_t> members;
};

std::vector<GroupPlan> groupPlans() {
    return {
        {"All doors", {kMainEntrance, kDeliveryGate, kStaffEntrance, kRoof}},
        {"Lifts", {kLiftA, kLiftB}},
        {"Car park", {kCarParkEntry, kCarParkExit, kCarParkLevel1, kCarParkLevel2}},
        {"Nurses", {kNursesStation1, kNursesStation2}},
        {"Public areas", {kLobby, kReception, kCafeteria, kCarParkLevel1, kCarParkLevel2, kLiftA, kLiftB}},
        {"Security", {kSecurityDesk, kNightDesk}},
    };
}

constexpr const char* kOfficeHours = "{5B6E0C1A-4F0B-4E59-9C64-2D1C6B0E7A01}";
constexpr const char* kNights = "{81D3F2C7-0A9E-47B2-8F35-6E9A41C5B702}";
constexpr const char* kWeekends = "{C42A9E50-7D1F-4C86-A1B7-93F05D28E603}";
constexpr const char* kVisitingHours = "{2F87B1D4-E6C3-4A90-B58E-0C7D94A1F504}";
constexpr const char* kAlways = "{E09C5A63-18B4-4D7F-92CA-7B36F1E08D05}";
constexpr const char* kBuiltInSchedule = "{Default}";

void addSchedules(VariableTree& variables) {
    constexpr unsigned kWorkdays = 0x3E;
    constexpr unsigned kEveryDay = 0x7F;
    constexpr unsigned kSaturdayAndSunday = 0x41;
    addSchedule(variables, kOfficeHours, "Office hours", weeklyHours(kWorkdays, 16, 36));
    std::string nights = weeklyHours(kEveryDay, 0, 12);
    const std::string evenings = weeklyHours(kEveryDay, 40, 48);
    for (std::size_t i = 0; i < nights.size(); ++i) {
        if (evenings[i] != '0') nights[i] = evenings[i];
    }
    addSchedule(variables, kNights, "Nights", nights);
    addSchedule(variables, kWeekends, "Weekends", weeklyHours(kSaturdayAndSunday, 0, 48));
    addSchedule(variables, kVisitingHours, "Visiting hours", weeklyHours(kEveryDay, 28, 38));
    addSchedule(variables, kAlways, "Around the clock", weeklyHours(kEveryDay, 0, 48));
}

void addDirectory(Installation& installation) {
    for (std::size_t i = 0; i < std::size(kStationNames); ++i) {
        installation.devices.push_back({mac(static_cast<std::uint8_t>(i + 1)), kStationNames[i]});
    }
    std::uint32_t id = 1;
    for (const GroupPlan& plan : groupPlans()) {
        Group group{id++, plan.key, {}};
        for (const std::uint8_t member : plan.members)
            group.members.push_back(mac(member));
        installation.groups.push_back(std::move(group));
    }
    installation.messages = {
        {"door-open", "The door is open"},
        {"please-wait", "Please wait, we are coming"},
        {"evacuation", "Evacuation"},
        {"fire-drill", "Fire drill"},
        {"visiting-ends", "Visiting hours end"},
        {"lift-fault", "Lift out of order"},
        {"car-park-full", "The car park is full"},
        {"chime", "Three-tone chime"},
    };
    installation.queues = {{1, false, 0, true, "Reception"}, {2, true, 1, false, "Night desk"}};
}

// The Events whose response switches a relay or plays something.
void addRelayAndAudioEvents(VariableTree& variables, std::uint32_t now) {
    const EventRecord events[] = {
        {.key = "{0D6B3A41-55C2-4B0E-9A77-1F20C8D4E101}",
         .name = "Front door",
         .trigger = Trigger::kCallButtonOn,
         .sourceDevice = mac(kMainEntrance),
         .scheduleKey = kOfficeHours,
         .response = Response::kActivateRelay,
         .destinationDevice = mac(kMainEntrance),
         .lastTriggered = now - 7 * kMinute},
        {.key = "{1A9F4C72-8E03-4D65-B1C8-2E31D9E5F202}",
         .name = "Front door closes",
         .trigger = Trigger::kCallButtonOff,
         .sourceDevice = mac(kMainEntrance),
         .delayed = true,
         .delaySeconds = 10,
         .scheduleKey = kOfficeHours,
         .response = Response::kDeactivateRelay,
         .destinationDevice = mac(kMainEntrance),
         .lastTriggered = now - 6 * kMinute},
        {.key = "{2B70D5A3-9F14-4E76-82D9-3F42EAF60303}",
         .name = "Delivery gate",
         .trigger = Trigger::kCallButtonOn,
         .sourceDevice = mac(kDeliveryGate),
         .scheduleKey = kOfficeHours,
         .response = Response::kAudioMessage,
         .messageKey = "please-wait",
         .destinationDevice = mac(kDeliveryGate),
         .lastTriggered = now - 3 * kHour},
        {.key = "{3C81E6B4-A025-4F87-93EA-4053FB071404}",
         .name = "Car park full",
         .trigger = Trigger::kSensorOn,
         .sourceGroup = "Car park",
         .scheduleKey = kBuiltInSchedule,
         .response = Response::kAudioMessage,
         .messageKey = "car-park-full",
         .destinationDevice = mac(kCarParkEntry),
         .lastTriggered = now - 2 * kDay},
        {.key = "{4D92F7C5-B136-4098-A4FB-51640C182505}",
         .name = "Barrier lifts",
         .trigger = Trigger::kSensorOff,
         .sourceDevice = mac(kCarParkExit),
         .scheduleKey = kAlways,
         .response = Response::kActivateRelay,
         .destinationDevice = mac(kCarParkExit),
         .lastTriggered = now - 20 * kMinute},
        {.key = "{5EA308D6-C247-41A9-B50C-62751D293606}",
         .name = "Barrier closes",
         .trigger = Trigger::kRelayOn,
         .sourceDevice = mac(kCarParkExit),
         .delayed = true,
         .delaySeconds = 2 * kMinute,
         .scheduleKey = kAlways,
         .response = Response::kDeactivateRelay,
         .destinationDevice = mac(kCarParkExit),
         .lastTriggered = now - 18 * kMinute},
        {.key = "{6FB419E7-D358-42BA-861D-73862E3A4707}",
         .name = "Staff entrance locks",
         .trigger = Trigger::kTimeOfDay,
         .timeOfDay = 80,
         .scheduleKey = kNights,
         .response = Response::kDeactivateRelay,
         .destinationDevice = mac(kStaffEntrance),
         .lastTriggered = now - 11 * kHour},
        {.key = "{70C52AF8-E469-43CB-972E-84973F4B5808}",
         .name = "Doors unlock",
         .trigger = Trigger::kTimeOfDay,
         .timeOfDay = 28,
         .scheduleKey = kOfficeHours,
         .response = Response::kActivateRelay,
         .destinationGroup = "All doors",
         .lastTriggered = now - kDay},
        {.key = "{81D63B09-F57A-44DC-A83F-95A8405C6909}",
         .name = "Visiting hours end",
         .trigger = Trigger::kTimeOfDay,
         .timeOfDay = 76,
         .scheduleKey = kVisitingHours,
         .response = Response::kAudioMessage,
         .messageKey = "visiting-ends",
         .destinationGroup = "Public areas",
         .lastTriggered = now - 15 * kHour},
        {.key = "{92E74C1A-068B-45ED-B940-A6B9516D7A10}",
         .name = "Annex door",
         .trigger = Trigger::kCallButtonOn,
         .sourceGroup = "Annex",
         .scheduleKey = kOfficeHours,
         .response = Response::kActivateRelay,
         .destinationDevice = mac(kStaffEntrance),
         .bad = true},
        {.key = "{A3F85D2B-179C-46FE-8A51-B7CA627E8B11}",
         .name = "Fire drill",
         .trigger = Trigger::kTimeOfDay,
         .timeOfDay = 44,
         .scheduleKey = kOfficeHours,
         .response = Response::kAudioMessage,
         .messageKey = "fire-drill",
         .destinationGroup = "Public areas",
         .lastTriggered = now - 92 * kDay,
         .disabled = true},
    };
    for (EventRecord event : events) {
        event.lastChecked = now - kMinute;
        addEvent(variables, event);
    }
}

constexpr const char* kBuildingSender = "intercom@building.example";

// Stores the payload under the GUID that the Event's record names, and adds the Event.
void addEventWithPayload(Installation& installation, EventRecord event, std::uint32_t now, std::string payload) {
    event.lastChecked = now - kMinute;
    if (const auto guid = parseGuid(event.fileGuid)) installation.storeFile(*guid, std::move(payload));
    addEvent(installation.variables, event);
}

void addEmailEvents(Installation& installation, std::uint32_t now) {
    addEventWithPayload(
        installation,
        {.key = "{B4096E3C-28AD-470F-9B62-C8DB738F9C12}",
         .name = "Roof access opened",
         .trigger = Trigger::kSensorOn,
         .sourceDevice = mac(kRoof),
         .scheduleKey = kBuiltInSchedule,
         .response = Response::kEmail,
         .fileGuid = "{7C1E9A54-3B60-4F2D-8D17-50A6E4B93C01}",
         .lastTriggered = now - 5 * kDay},
        now,
        makeEmailPayload({kBuildingSender, "security@building.example", "Roof access opened",
                          "The roof access door was opened.\r\nPlease check the camera & call the night desk.\r\n"}));
    addEventWithPayload(
        installation,
        {.key = "{C51A7F4D-39BE-4810-AC73-D9EC8490AD13}",
         .name = "Station lost",
         .trigger = Trigger::kDeviceConnection,
         .sourceGroup = "Public areas",
         .delayed = true,
         .delaySeconds = 5 * kMinute,
         .scheduleKey = kBuiltInSchedule,
         .response = Response::kEmail,
         .fileGuid = "{8D2FAB65-4C71-4A3E-9E28-61B7F5CA4D02}",
         .lastTriggered = now - 31 * kHour},
        now,
        makeEmailPayload({kBuildingSender, "facility@building.example;it@building.example", "Intercom station lost",
                          "A station in the public areas has been out of reach for more than 5 minutes.\r\n"}));
    addEventWithPayload(installation,
                        {.key = "{D62B805E-4ACF-4921-BD84-EAFD95A1BE14}",
                         .name = "Server restarted",
                         .trigger = Trigger::kServerConnection,
                         .scheduleKey = kAlways,
                         .response = Response::kEmail,
                         .fileGuid = "{9E30BC76-5D82-4B4F-AF39-72C806DB5E03}",
                         .lastTriggered = now - 12 * kDay},
                        now,
                        makeEmailPayload({kBuildingSender, "it@building.example", "Communications server restarted",
                                          "The communications server is up again, at 100% of its stations.\r\n"}));
    addEventWithPayload(installation,
                        {.key = "{E73C916F-5BD0-4A32-8E95-FB0EA6B2CF15}",
                         .name = "Pharmacy after hours",
                         .trigger = Trigger::kCallButtonOn,
                         .sourceDevice = mac(kPharmacy),
                         .scheduleKey = kNights,
                         .response = Response::kEmail,
                         .fileGuid = "{AF41CD87-6E93-4C50-B04A-83D917EC6F04}"},
                        now,
                        makeEmailPayload({kBuildingSender, "pharmacy@building.example", "Call at the hatch",
                                          "Somebody rings at the pharmacy hatch <after hours>.\r\n"}));
}

void addSpokenEvents(Installation& installation, std::uint32_t now) {
    addEventWithPayload(installation,
                        {.key = "{F84DA270-6CE1-4B43-9FA6-0C1FB7C3D016}",
                         .name = "Help call, ward 1",
                         .trigger = Trigger::kCallButtonOn,
                         .sourceDevice = mac(kWard1),
                         .scheduleKey = kBuiltInSchedule,
                         .response = Response::kSpokenText,
                         .messageKey = "chime",
                         .fileGuid = "{B052DE98-7FA4-4D61-815B-94EA28FD7005}",
                         .destinationGroup = "Nurses",
                         .lastTriggered = now - 42 * kMinute},
                        now, makeSpokenTextPayload("Help call in ward 1."));
    addEventWithPayload(installation,
                        {.key = "{095EB381-7DF2-4C54-A0B7-1D20C8D4E117}",
                         .name = "lift alarm",
                         .trigger = Trigger::kCallButtonOn,
                         .sourceGroup = "Lifts",
                         .delayed = true,
                         .delaySeconds = 3,
                         .scheduleKey = kAlways,
                         .response = Response::kSpokenText,
                         .messageKey = "chime",
                         .fileGuid = "{C163EFA9-80B5-4E72-926C-A5FB390E8106}",
                         .destinationGroup = "Security",
                         .lastTriggered = now - 9 * kDay},
                        now, makeSpokenTextPayload("Alarm in a lift.\r\nAnswer the call & send somebody."));
    addEventWithPayload(installation,
                        {.key = "{1A6FC492-8E03-4D65-B1C8-2E31D9E5F218}",
                         .name = "Plant room sensor clears",
                         .trigger = Trigger::kRelayOff,
                         .sourceDevice = mac(kPlantRoom),
                         .scheduleKey = kWeekends,
                         .response = Response::kSpokenText,
                         .messageKey = "chime",
                         .fileGuid = "{D274F0BA-91C6-4F83-A37D-B60C4A1F9207}",
                         .destinationDevice = mac(kSecurityDesk)},
                        now, makeSpokenTextPayload("The plant room is back to normal."));
}

void addTextFileEvents(VariableTree& variables, std::uint32_t now) {
    addEvent(variables, {.key = "{7DA1E5C8-52B6-4F19-86CE-A41B93D70F19}",
                         .name = "Evacuation",
                         .trigger = Trigger::kRelayOn,
                         .sourceDevice = mac(kSecurityDesk),
                         .scheduleKey = kBuiltInSchedule,
                         .response = Response::kTextFile,
                         .textFile = "\\\\fileserver\\announcements\\evacuation.txt",
                         .destinationGroup = "Public areas",
                         .lastChecked = now - kMinute});
    addEvent(variables, {.key = "{CB28F6D9-63C7-4A2A-97DF-B52CA4E81A20}",
                         .name = "Server room too warm",
                         .trigger = Trigger::kSensorOn,
                         .sourceDevice = mac(kServerRoom),
                         .delayed = true,
                         .delaySeconds = 90,
                         .scheduleKey = kAlways,
                         .response = Response::kTextFile,
                         .textFile = "\\\\fileserver\\announcements\\server room.txt",
                         .destinationDevice = mac(kNightDesk),
                         .lastTriggered = now - 33 * kDay,
                         .lastChecked = now - kMinute});
}

}  // namespace

std::vector<User> defaultUsers() {
    return {{"admin", "admin", true}, {"operator", "operator", false}};
}

Installation makeBuiltInBuilding(std::uint32_t now) {
    Installation installation;
    installation.users = defaultUsers();
    addDirectory(installation);
    addSettings(installation.variables);
    addSchedules(installation.variables);
    addRelayAndAudioEvents(installation.variables, now);
    addEmailEvents(installation, now);
    addSpokenEvents(installation, now);
    addTextFileEvents(installation.variables, now);
    return installation;
}

}  // namespace orvc::demo
