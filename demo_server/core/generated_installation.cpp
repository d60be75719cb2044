#include "demo_server/core/generated_installation.h"

#include <cstdio>

#include "demo_server/core/built_in_building.h"
#include "demo_server/core/payload.h"
#include "demo_server/core/records.h"

namespace orvc::demo {
namespace {

// Families of numbered GUIDs.
constexpr std::uint32_t kEventKeys = 1;
constexpr std::uint32_t kScheduleKeys = 2;
constexpr std::uint32_t kPayloadFiles = 3;

constexpr std::uint32_t kSchedules = 10;
constexpr std::uint32_t kMessages = 20;
constexpr std::uint32_t kMembersPerGroup = 8;

template <typename... Values>
std::string formatText(const char* format, Values... values) {
    char text[96];
    const int length = std::snprintf(text, sizeof text, format, values...);
    return {text, static_cast<std::size_t>(length)};
}

// Locally administered addresses, one per device.
KSMac deviceMac(std::uint32_t index) {
    const auto byte = [index](int shift) { return static_cast<std::uint8_t>(index >> shift); };
    return {0x02, 0x4D, byte(24), byte(16), byte(8), byte(0)};
}

std::string groupKey(std::uint32_t index) {
    return formatText("Zone %u", index + 1);
}
std::string messageKey(std::uint32_t index) {
    return formatText("message-%02u", index + 1);
}

void addDirectory(Installation& installation, const GeneratedSize& size) {
    constexpr const char* kPlaces[] = {"Door", "Lift", "Corridor", "Car park", "Ward", "Office", "Gate", "Plant room"};
    for (std::uint32_t i = 0; i < size.devices; ++i) {
        installation.devices.push_back({deviceMac(i), formatText("%s %u", kPlaces[i % std::size(kPlaces)], i + 1)});
    }
    for (std::uint32_t i = 0; i < size.groups; ++i) {
        Group group{i + 1, groupKey(i), {}};
        for (std::uint32_t m = 0; m < kMembersPerGroup && m < size.devices; ++m) {
            group.members.push_back(deviceMac((i * kMembersPerGroup + m) % size.devices));
        }
        installation.groups.push_back(std::move(group));
    }
    for (std::uint32_t i = 0; i < kMessages; ++i) {
        installation.messages.push_back({messageKey(i), formatText("Announcement %u", i + 1)});
    }
    installation.queues.push_back({1, false, 0, true, "Reception"});
}

// An Event in the making, with the texts that its record borrows.
class EventMaker {
  public:
    EventMaker(Installation& installation, const GeneratedSize& size, std::uint32_t now)
        : installation_(installation), size_(size), now_(now) {}

    void add(std::uint32_t index) {
        key_ = guidText(numberedGuid(kEventKeys, index));
        name_ = formatText("Event %06u", index + 1);
        schedule_ = guidText(numberedGuid(kScheduleKeys, index % kSchedules));
        EventRecord event{.key = key_, .name = name_, .scheduleKey = schedule_, .lastChecked = now_};
        setTrigger(event, index);
        setResponse(event, index);
        if (index % 3 == 0) event.lastTriggered = now_ - index % 100'000;
        event.disabled = index % 50 == 49;
        addEvent(installation_.variables, event);
    }

  private:
    void setTrigger(EventRecord& event, std::uint32_t index) {
        event.trigger = static_cast<Trigger>(index % 9 + 1);
        if (event.trigger == Trigger::kTimeOfDay) {
            event.timeOfDay = index % 96;
        } else if (event.trigger != Trigger::kServerConnection) {
            setPlace(event.sourceDevice, sourceGroup_, index);
            event.sourceGroup = sourceGroup_;
        }
        event.delayed = index % 4 == 0;
        event.delaySeconds = event.delayed ? index % 300 + 1 : 0;
    }

    void setResponse(EventRecord& event, std::uint32_t index) {
        event.response = static_cast<Response>(index / 9 % 6 + 1);
        if (event.response != Response::kEmail) {
            setPlace(event.destinationDevice, destinationGroup_, index + 7);
            event.destinationGroup = destinationGroup_;
        }
        if (event.response == Response::kAudioMessage || event.response == Response::kSpokenText) {
            message_ = messageKey(index % kMessages);
            event.messageKey = message_;
        }
        if (event.response == Response::kTextFile) event.textFile = "\\\\fileserver\\announcements\\general.txt";
        if (event.response == Response::kEmail || event.response == Response::kSpokenText) {
            const KSGuid guid = numberedGuid(kPayloadFiles, index);
            file_ = guidText(guid);
            event.fileGuid = file_;
            installation_.storeFile(guid, payload(event.response));
        }
    }

    std::string payload(Response response) const {
        if (response == Response::kSpokenText) return makeSpokenTextPayload("Attention please: " + name_);
        return makeEmailPayload(
            {"intercom@building.example", "duty@building.example", name_, "The event has occurred.\r\n"});
    }

    // A device, or for every fifth index a group.
    void setPlace(KSMac& device, std::string& group, std::uint32_t index) const {
        group.clear();
        if (size_.groups > 0 && (index % 5 == 0 || size_.devices == 0)) {
            group = groupKey(index % size_.groups);
        } else if (size_.devices > 0) {
            device = deviceMac(index % size_.devices);
        }
    }

    Installation& installation_;
    const GeneratedSize size_;
    const std::uint32_t now_;
    std::string key_, name_, schedule_, sourceGroup_, destinationGroup_, message_, file_;
};

}  // namespace

Installation makeGeneratedInstallation(const GeneratedSize& size, std::uint32_t now) {
    Installation installation;
    installation.users = defaultUsers();
    addDirectory(installation, size);
    addSettings(installation.variables);
    for (std::uint32_t i = 0; i < kSchedules; ++i) {
        addSchedule(installation.variables, guidText(numberedGuid(kScheduleKeys, i)), formatText("Shift %u", i + 1),
                    weeklyHours(0x7F, i * 4, i * 4 + 12));
    }
    EventMaker maker(installation, size, now);
    for (std::uint32_t i = 0; i < size.events; ++i)
        maker.add(i);
    return installation;
}

}  // namespace orvc::demo
