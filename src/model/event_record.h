// One Event: an automation rule of the installation, and its fields as system variables.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "link/ks_types.h"
#include "model/directory.h"
#include "model/variable_value.h"
#include "support/clock.h"

namespace orvc {

// Trigger codes, as stored on the server; also the position in the editor's trigger list.
enum class Trigger : std::uint32_t {
    kNone = 0,
    kButtonActivation = 1,
    kButtonDeactivation = 2,
    kSensorActivation = 3,
    kSensorDeactivation = 4,
    kRelayActivation = 5,
    kRelayDeactivation = 6,
    kDeviceConnection = 7,
    kServerConnection = 8,  // has no source device or group
    kTimeOfDay = 9,         // its source is a time
};

// Response codes, as stored on the server.
enum class Response : std::uint32_t {
    kNone = 0,
    kActivateRelay = 1,
    kDeactivateRelay = 2,
    kServerAudio = 3,
    kEmail = 4,
    kTtsFile = 5,
    kTtsMessage = 6,
};

// A dword that has not been received is absent. The server's own word for that is 0xFFFFFFFF: a value of that kind
// counts as not received.
using OptionalDword = std::optional<std::uint32_t>;

struct EventRecord {
    std::string key;  // never changed after creation
    OptionalDword completeBits;
    std::optional<std::string> name;
    OptionalDword triggerType;
    KSMac triggerDevice{};
    std::optional<std::string> triggerGroupKey;
    std::uint32_t timeOfDay = 0;    // quarter hours after midnight
    std::uint32_t timeoutType = 0;  // 0 = immediately, 1 = after timeoutSeconds
    std::uint32_t timeoutSeconds = 0;
    std::optional<std::string> scheduleKey;
    OptionalDword responseType;
    std::optional<std::string> messageKey;
    std::optional<std::string> fileGuid;  // GUID text of the payload file
    std::optional<std::string> ttsFilename;
    KSMac responseDevice{};
    std::optional<std::string> responseGroupKey;
    OptionalDword lastChecked = 0;    // the server's; carried along
    OptionalDword lastTriggered = 0;  // seconds since 1970 UTC; 0 = never
    OptionalDword disabled;
    OptionalDword badData;  // 1 = refers to something that does not exist

    std::int64_t completionDeadline = 0;  // seconds since 1970 UTC
    bool isShown = false;                 // has been complete once; the list's own
};

// How a field is read and written; one table drives both.
struct EventField {
    using Member = std::variant<OptionalDword EventRecord::*, std::uint32_t EventRecord::*,
                                std::optional<std::string> EventRecord::*, KSMac EventRecord::*>;
    enum class Written { kAlways, kToClearTheErrorMark };

    std::string_view name;  // the last component of the variable's name
    Member member;
    int writePosition;  // from 0 on: the server wants the delay before the time of day, and the marker near the end
    Written written = Written::kAlways;
};

inline constexpr std::size_t kEventFieldCount = 19;

// In reading order.
const std::array<EventField, kEventFieldCount>& eventFields();

// Takes a variable's value into the field of that name. Returns the field; null when there is none.
const EventField* setEventField(EventRecord& record, std::string_view fieldName, std::optional<std::string_view> text,
                                std::uint32_t number);

// What an Event is written as, below its key: every value in writing order. The error mark is among them, as 0, only
// where `clearErrorMark` says so.
VariableValues eventValues(const EventRecord& record, bool clearErrorMark);

// The value of one field, and the completion marker behind it.
VariableValues eventFieldValues(const EventRecord& record, std::string_view fieldName);

// Copies the field of that name.
void copyEventField(EventRecord& to, const EventRecord& from, std::string_view fieldName);

// Whether the record may be shown. A record whose marker has arrived counts as complete once the time is past its
// deadline; missing values that a row needs are set to 0 then.
bool isEventComplete(EventRecord& record, const Clock& clock);

// Whether the groups that the record names are known; devices are not checked. Asked when a row is shown, never kept: a
// group may be unknown for a moment.
bool isEventValid(const EventRecord& record, const Directory& directory);

}  // namespace orvc
