// The variables of an installation, as the server sends them: 19 to an Event.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "link/ks_types.h"

namespace orvc::bench {

struct SampleVariable {
    std::string name;
    std::uint32_t type = 0;
    std::optional<std::string> text;
    std::uint32_t number = 0;
};

// Calls `take` with the 19 variables of Event `index` in the order in which the console writes them. Keys and names are
// scattered, as GUIDs and the names that people give are.
template <typename Take>
void makeSampleEvent(std::uint32_t index, const Take& take) {
    const std::uint32_t scattered = index * 2654435761u;  // a permutation of all 32-bit numbers
    char text[80];
    std::snprintf(text, sizeof text, "{%08X-51B2-4C03-9E44-%08X7A01}", scattered, ~index);
    const std::string path = "\\ORVS\\Events\\" + std::string(text) + "\\";
    SampleVariable variable;
    const auto addText = [&](const char* field, std::string value) {
        variable.name = path + field;
        variable.type = variable_type::kString;
        variable.text = std::move(value);
        variable.number = 0;
        take(variable);
    };
    const auto addNumber = [&](const char* field, std::uint32_t value) {
        variable.name = path + field;
        variable.type = variable_type::kDword;
        variable.text.reset();
        variable.number = value;
        take(variable);
    };
    std::snprintf(text, sizeof text, "Door %u of the east wing", scattered % 1'000'000);
    addText("EventName", text);
    addNumber("EventTriggerType", 1 + index % 7);
    std::snprintf(text, sizeof text, "02:4d:00:%02x:%02x:%02x", index >> 16 & 255, index >> 8 & 255, index & 255);
    const std::string mac = text;
    addText("TriggerDeviceMAC", mac);
    addText("TriggerGroupKey", "");
    addNumber("TriggerTimeoutType", 0);
    addNumber("TriggerTimeoutSeconds", 0);
    addNumber("TriggerTimeOfDay", 0);
    addText("ScheduleKey", "{00000001-51B2-4C03-9E44-0123456789AB}");
    addNumber("EventResponseType", 1 + index % 2);
    addText("MessageKey", "");
    addText("FileGUID", "");
    addText("TtsFilename", "");
    addText("ResponseDeviceMAC", mac);
    addText("ResponseGroupKey", "");
    addNumber("lastTriggered", 1'795'251'900);
    addNumber("lastChecked", 1'795'251'900);
    addNumber("Disabled", 0);
    addNumber("completeBits", 1);
    addNumber("badData", 0);
}

}  // namespace orvc::bench
