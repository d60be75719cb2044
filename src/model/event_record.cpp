#include "model/event_record.h"

#include <algorithm>

#include "model/mac.h"

namespace orvc {
namespace {

constexpr std::uint32_t kNotReceived = 0xFFFFFFFF;
constexpr std::uint32_t kMustBeWhole = 1;  // bit 0 of completeBits

OptionalDword receivedDword(std::uint32_t number) {
    return number == kNotReceived ? std::nullopt : OptionalDword(number);
}

// Stores a value in whatever kind of member a field has.
struct Setter {
    EventRecord& record;
    std::optional<std::string_view> text;
    std::uint32_t number;

    void operator()(OptionalDword EventRecord::*member) const { record.*member = receivedDword(number); }
    void operator()(std::uint32_t EventRecord::*member) const { record.*member = number; }
    void operator()(std::optional<std::string> EventRecord::*member) const {
        if (text)
            record.*member = std::string(*text);
        else
            (record.*member).reset();
    }
    void operator()(KSMac EventRecord::*member) const {
        // Anything that does not read as an address leaves the old one.
        if (const auto mac = parseMac(text.value_or(std::string_view()))) record.*member = *mac;
    }
};

bool lacksPayload(const EventRecord& record) {
    switch (static_cast<Response>(*record.responseType)) {
        case Response::kEmail:
            return !record.fileGuid;
        case Response::kTtsMessage:
            return !record.fileGuid || !record.messageKey;
        case Response::kTtsFile:
            return !record.ttsFilename;
        default:
            return false;
    }
}

bool lacksRequiredField(const EventRecord& record) {
    return !record.triggerType || !record.responseType || !record.name || lacksPayload(record) || !record.scheduleKey ||
           (isNoDevice(record.triggerDevice) && !record.triggerGroupKey) ||
           (isNoDevice(record.responseDevice) && !record.responseGroupKey) || !record.lastChecked ||
           !record.lastTriggered || !record.disabled;
}

}  // namespace

const std::array<EventField, 19>& eventFields() {
    static const std::array<EventField, 19> fields{{
        {"EventName", &EventRecord::name, true},
        {"EventTriggerType", &EventRecord::triggerType, false},
        {"TriggerDeviceMAC", &EventRecord::triggerDevice, false},
        {"TriggerGroupKey", &EventRecord::triggerGroupKey, false},
        {"TriggerTimeOfDay", &EventRecord::timeOfDay, true},
        {"TriggerTimeoutType", &EventRecord::timeoutType, true},
        {"TriggerTimeoutSeconds", &EventRecord::timeoutSeconds, true},
        {"ScheduleKey", &EventRecord::scheduleKey, false},
        {"EventResponseType", &EventRecord::responseType, true},
        {"MessageKey", &EventRecord::messageKey, false},
        {"FileGUID", &EventRecord::fileGuid, false},
        {"TtsFilename", &EventRecord::ttsFilename, false},
        {"ResponseDeviceMAC", &EventRecord::responseDevice, false},
        {"ResponseGroupKey", &EventRecord::responseGroupKey, false},
        {"completeBits", &EventRecord::completeBits, false},
        {"lastChecked", &EventRecord::lastChecked, false},
        {"lastTriggered", &EventRecord::lastTriggered, false},
        {"Disabled", &EventRecord::disabled, false},
        {"badData", &EventRecord::badData, false},
    }};
    return fields;
}

const std::array<std::size_t, 19>& eventWriteOrder() {
    // As read, but timeout type and seconds come before the time of day, and the marker near the end.
    static constexpr std::array<std::size_t, 19> order{0,  1,  2,  3,  5,  6,  4,  7,  8, 9,
                                                       10, 11, 12, 13, 16, 15, 17, 14, 18};
    return order;
}

bool setEventField(EventRecord& record, std::string_view fieldName, std::optional<std::string_view> text,
                   std::uint32_t number) {
    for (const EventField& field : eventFields()) {
        if (fieldName != field.name) continue;
        std::visit(Setter{record, text, number}, field.member);
        record.changed = record.changed || field.shownInList;
        return true;
    }
    return false;
}

bool isEventComplete(EventRecord& record, const Clock& clock) {
    if (!record.completeBits) return false;
    if ((*record.completeBits & kMustBeWhole) == 0 || !lacksRequiredField(record)) return true;
    if (clock.now() <= record.completionDeadline) return false;
    for (OptionalDword EventRecord::*member :
         {&EventRecord::responseType, &EventRecord::triggerType, &EventRecord::lastChecked, &EventRecord::lastTriggered,
          &EventRecord::disabled})
        if (!(record.*member)) record.*member = 0;
    return true;
}

bool isEventValid(const EventRecord& record, const Directory& directory) {
    return std::ranges::all_of(
        std::initializer_list<const std::optional<std::string>*>{&record.triggerGroupKey, &record.responseGroupKey},
        [&](const auto* key) { return !*key || (*key)->empty() || directory.findGroup(**key) != nullptr; });
}

}  // namespace orvc
