#include "demo_server/core/records.h"

#include <array>

#include "demo_server/core/text_codec.h"

namespace orvc::demo {

void addEvent(VariableTree& variables, const EventRecord& event) {
    std::string path = "\\ORVS\\Events\\";
    path += event.key;
    VariableTree::Key& key = variables.createKey(path);
    key.values.reserve(event.bad ? 19 : 18);
    variables.setString(key, "EventName", event.name);
    variables.setDword(key, "EventTriggerType", static_cast<std::uint32_t>(event.trigger));
    variables.setString(key, "TriggerDeviceMAC", macText(event.sourceDevice));
    variables.setString(key, "TriggerGroupKey", event.sourceGroup);
    variables.setDword(key, "TriggerTimeoutType", event.delayed ? 1 : 0);
    variables.setDword(key, "TriggerTimeoutSeconds", event.delaySeconds);
    variables.setDword(key, "TriggerTimeOfDay", event.timeOfDay);
    variables.setString(key, "ScheduleKey", event.scheduleKey);
    variables.setDword(key, "EventResponseType", static_cast<std::uint32_t>(event.response));
    variables.setString(key, "MessageKey", event.messageKey);
    variables.setString(key, "FileGUID", event.fileGuid);
    variables.setString(key, "TtsFilename", event.textFile);
    variables.setString(key, "ResponseDeviceMAC", macText(event.destinationDevice));
    variables.setString(key, "ResponseGroupKey", event.destinationGroup);
    variables.setDword(key, "lastTriggered", event.lastTriggered);
    variables.setDword(key, "lastChecked", event.lastChecked);
    variables.setDword(key, "Disabled", event.disabled ? 1 : 0);
    if (event.bad) variables.setDword(key, "badData", 1);
    variables.setDword(key, "completeBits", 1);
}

std::string weeklyHours(unsigned days, unsigned fromSlot, unsigned toSlot) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::array<unsigned, 42> mask{};
    for (unsigned day = 0; day < 7; ++day) {
        if ((days >> day & 1) == 0) continue;
        for (unsigned slot = fromSlot; slot < toSlot; ++slot)
            mask[day * 6 + slot / 8] |= 1u << slot % 8;
    }
    std::string digits;
    for (const unsigned byte : mask) {
        digits += kDigits[byte >> 4];
        digits += kDigits[byte & 15];
    }
    return digits;
}

void addSchedule(VariableTree& variables, std::string_view key, std::string_view name, std::string_view hours) {
    std::string path = "\\ORVS\\Schedules\\";
    path += key;
    VariableTree::Key& created = variables.createKey(path);
    variables.setString(created, "Name", name);
    variables.setString(created, "Key", key);
    variables.setString(created, "Hours", hours);
    variables.setDword(created, "CompleteBits", 1);
}

void addSettings(VariableTree& variables) {
    VariableTree::Key& root = variables.createKey("\\ORVS\\");
    variables.createKey("\\ORVS\\Events");
    variables.createKey("\\ORVS\\Schedules");
    variables.setString(root, "userName", "intercom@building.example");
    variables.setString(root, "password", "intercom");
    variables.setString(root, "smtpHost", "mail.building.example");
    variables.setString(root, "defaultFrom", "intercom@building.example");
    variables.setDword(root, "smtpPort", 587);
    variables.setDword(root, "completeBits", 1);
}

}  // namespace orvc::demo
