#include "editors/event/fixed_choices.h"

#include <array>

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

constexpr int kQuartersPerDay = 96;
constexpr int kQuartersPerHalfDay = 48;

std::string timeOfDay(int quarter, const StringTable& strings) {
    if (quarter == 0) return strings.text(IDS_MIDNIGHT);
    if (quarter == kQuartersPerHalfDay) return strings.text(IDS_NOON);
    const int hour = quarter / 4 % 12;
    const unsigned format = quarter < kQuartersPerHalfDay ? IDS_TIME_AM : IDS_TIME_PM;
    return fillIn(strings.text(format), {long{hour == 0 ? 12 : hour}, long{quarter % 4 * 15}});
}

}  // namespace

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
    for (int value = 0; value < kTimeoutValueCount; ++value)
        texts.push_back(std::to_string(value));
    return texts;
}

std::vector<std::string> listTimeoutUnits(const StringTable& strings) {
    return {strings.text(IDS_SECONDS), strings.text(IDS_MINUTES)};
}

std::vector<std::string> listTimesOfDay(const StringTable& strings) {
    std::vector<std::string> texts{strings.text(IDS_SELECT_TIME_OF_DAY)};
    for (int quarter = 0; quarter < kQuartersPerDay; ++quarter)
        texts.push_back(timeOfDay(quarter, strings));
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
