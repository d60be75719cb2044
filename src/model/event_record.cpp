#include "model/event_record.h"

#include <algorithm>

#include "model/mac.h"
#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::uint32_t kNotReceived = 0xFFFFFFFF;
constexpr std::string_view kMarker = "completeBits";
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

// What a member of whatever kind is written as.
struct Getter {
    const EventRecord& record;
    std::string name;

    VariableValue operator()(OptionalDword EventRecord::*member) const {
        return {name, (record.*member).value_or(kNotReceived)};
    }
    VariableValue operator()(std::uint32_t EventRecord::*member) const { return {name, record.*member}; }
    VariableValue operator()(std::optional<std::string> EventRecord::*member) const {
        return {name, (record.*member).value_or(std::string())};
    }
    VariableValue operator()(KSMac EventRecord::*member) const { return {name, formatMac(record.*member)}; }
};

// Every value that is wanted, in writing order.
template <typename IsWanted>
VariableValues valuesOf(const EventRecord& record, IsWanted isWanted) {
    std::array<const EventField*, kEventFieldCount> order{};
    for (const EventField& field : eventFields())
        order[static_cast<std::size_t>(field.writePosition)] = &field;
    const std::string path = joinPath(kEventsPath, record.key).append("\\");
    VariableValues values;
    values.reserve(order.size());
    for (const EventField* field : order)
        if (isWanted(*field))
            values.push_back(std::visit(Getter{record, path + std::string(field->name)}, field->member));
    return values;
}

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

const std::array<EventField, kEventFieldCount>& eventFields() {
    static constexpr std::array<EventField, kEventFieldCount> fields{{
        {"EventName", &EventRecord::name, 0},
        {"EventTriggerType", &EventRecord::triggerType, 1},
        {"TriggerDeviceMAC", &EventRecord::triggerDevice, 2},
        {"TriggerGroupKey", &EventRecord::triggerGroupKey, 3},
        {"TriggerTimeOfDay", &EventRecord::timeOfDay, 6},
        {"TriggerTimeoutType", &EventRecord::timeoutType, 4},
        {"TriggerTimeoutSeconds", &EventRecord::timeoutSeconds, 5},
        {"ScheduleKey", &EventRecord::scheduleKey, 7},
        {"EventResponseType", &EventRecord::responseType, 8},
        {"MessageKey", &EventRecord::messageKey, 9},
        {"FileGUID", &EventRecord::fileGuid, 10},
        {"TtsFilename", &EventRecord::ttsFilename, 11},
        {"ResponseDeviceMAC", &EventRecord::responseDevice, 12},
        {"ResponseGroupKey", &EventRecord::responseGroupKey, 13},
        {kMarker, &EventRecord::completeBits, 17},
        {"lastChecked", &EventRecord::lastChecked, 15},
        {"lastTriggered", &EventRecord::lastTriggered, 14},
        {"Disabled", &EventRecord::disabled, 16},
        {"badData", &EventRecord::badData, 18, EventField::Written::kToClearTheErrorMark},
    }};
    return fields;
}

VariableValues eventValues(const EventRecord& record, bool clearErrorMark) {
    return valuesOf(record, [clearErrorMark](const EventField& field) {
        return field.written == EventField::Written::kAlways || clearErrorMark;
    });
}

VariableValues eventFieldValues(const EventRecord& record, std::string_view fieldName) {
    return valuesOf(record,
                    [fieldName](const EventField& field) { return field.name == fieldName || field.name == kMarker; });
}

void copyEventField(EventRecord& to, const EventRecord& from, std::string_view fieldName) {
    const auto field = std::ranges::find(eventFields(), fieldName, &EventField::name);
    if (field != eventFields().end()) std::visit([&](auto member) { to.*member = from.*member; }, field->member);
}

const EventField* setEventField(EventRecord& record, std::string_view fieldName, std::optional<std::string_view> text,
                                std::uint32_t number) {
    for (const EventField& field : eventFields()) {
        if (fieldName != field.name) continue;
        std::visit(Setter{record, text, number}, field.member);
        return &field;
    }
    return nullptr;
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
