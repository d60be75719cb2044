#include "editors/event/fixed_choices.h"

#include <array>

#include "resources/resource.h"
#include "support/time_of_day.h"

namespace orvc {

std::vector<std::string> listTriggers(const StringTable& strings) {
    std::vector<std::string> texts;
    for (unsigned code = 0; code < kTriggerCount; ++code)
        texts.push_back(strings.text(IDS_TRIGGER_NONE + code));
    return texts;
}

std::vector<std::string> listTimeouts(const StringTable& strings) {
    return {strings.text(IDS_SELECT_TIMEOUT), strings.text(IDS_TRIGGER_IMMEDIATELY), strings.text(IDS_TRIGGER_AFTER)};
}

std::vector<std::string> listTimeoutValues() {
    std::vector<std::string> texts;
    texts.reserve(kTimeoutValueCount);
    for (int value = 0; value < kTimeoutValueCount; ++value)
        texts.push_back(std::to_string(value));
    return texts;
}

std::vector<std::string> listTimeoutUnits(const StringTable& strings) {
    return {strings.text(IDS_SECONDS), strings.text(IDS_MINUTES)};
}

std::vector<std::string> listTimesOfDay(const StringTable& strings) {
    std::vector<std::string> texts{strings.text(IDS_SELECT_TIME_OF_DAY)};
    for (int quarter = 0; quarter < kQuarterHoursPerDay; ++quarter)
        texts.push_back(timeOfDayText(quarter, strings));
    return texts;
}

std::span<const Response> responsesFor(Trigger trigger) {
    static constexpr std::array kAll{Response::kNone,        Response::kActivateRelay, Response::kDeactivateRelay,
                                     Response::kServerAudio, Response::kTtsFile,       Response::kTtsMessage,
                                     Response::kEmail};
    // A lost server cannot reach a device.
    static constexpr std::array kServer{Response::kNone, Response::kEmail};
    if (trigger == Trigger::kServerConnection) return kServer;
    return kAll;
}

std::string responseName(Response response, const StringTable& strings) {
    if (response == Response::kNone) return strings.text(IDS_SELECT_RESPONSE);
    return strings.text(IDS_RESPONSE_NONE + static_cast<unsigned>(response));
}

bool hasTimeout(Trigger trigger) {
    return trigger == Trigger::kButtonActivation || trigger == Trigger::kSensorActivation ||
           trigger == Trigger::kRelayActivation;
}

}  // namespace orvc
