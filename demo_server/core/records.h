// Events and Schedules as an installation stores them, for whoever makes up an installation.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "demo_server/core/installation.h"

namespace orvc::demo {

// Trigger codes, as system variables hold them.
enum class Trigger : std::uint32_t {
    kCallButtonOn = 1,
    kCallButtonOff = 2,
    kSensorOn = 3,
    kSensorOff = 4,
    kRelayOn = 5,
    kRelayOff = 6,
    kDeviceConnection = 7,
    kServerConnection = 8,
    kTimeOfDay = 9,
};

// Response codes, as system variables hold them.
enum class Response : std::uint32_t {
    kActivateRelay = 1,
    kDeactivateRelay = 2,
    kAudioMessage = 3,
    kEmail = 4,
    kTextFile = 5,
    kSpokenText = 6,
};

// One Event. Texts are borrowed for the call; what does not apply stays empty or zero.
struct EventRecord {
    std::string_view key{};  // braced GUID, upper case
    std::string_view name{};
    Trigger trigger = Trigger::kCallButtonOn;
    KSMac sourceDevice{};
    std::string_view sourceGroup{};
    bool delayed = false;
    std::uint32_t delaySeconds = 0;
    std::uint32_t timeOfDay = 0;  // quarter hours after midnight
    std::string_view scheduleKey{};
    Response response = Response::kActivateRelay;
    std::string_view messageKey{};
    std::string_view fileGuid{};
    std::string_view textFile{};
    KSMac destinationDevice{};
    std::string_view destinationGroup{};
    std::uint32_t lastTriggered = 0;  // seconds since 1970 UTC
    std::uint32_t lastChecked = 0;
    bool disabled = false;
    bool bad = false;  // refers to something that does not exist
};

// Creates the Event's key and all its values.
void addEvent(VariableTree& variables, const EventRecord& event);

// Half-hour slots of one stretch of a day, on the days of `days` (bit 0 is Sunday), as the 84 digits of a Schedule's
// hours. `toSlot` is the first slot behind the stretch, 48 at most.
std::string weeklyHours(unsigned days, unsigned fromSlot, unsigned toSlot);

// Creates the Schedule's key and all its values.
void addSchedule(VariableTree& variables, std::string_view key, std::string_view name, std::string_view hours);

// The root keys and the e-mail settings, marked complete.
void addSettings(VariableTree& variables);

}  // namespace orvc::demo
