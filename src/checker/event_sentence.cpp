#include "checker/event_sentence.h"

#include <optional>

#include "checker/problem_rules.h"
#include "model/mac.h"
#include "resources/resource.h"
#include "support/text.h"
#include "support/time_of_day.h"

namespace orvc {
namespace {

constexpr std::uint32_t kDelayed = 1;
constexpr std::uint32_t kSecondsPerMinute = 60;

// The patterns of a trigger or a response stand one after the other: for a device, for a group, for neither.
enum Place : unsigned { kDevice, kGroup, kNowhere, kPlaceCount };

struct NamedPlace {
    Place kind = kNowhere;
    std::string name;
};

// A device that is named comes before a group.
NamedPlace placeOf(const KSMac& device, const std::optional<std::string>& group, const EventNames& names) {
    if (!isNoDevice(device)) return {kDevice, names.device(device)};
    if (!receivedText(group).empty()) return {kGroup, *group};
    return {};
}

// ---------------------------------------------------------------------------------------------------------------------
// When

std::string schedulePhrase(const EventRecord& record, const StringTable& strings, const EventNames& names) {
    const std::string_view stored = receivedText(record.scheduleKey);
    if (stored.empty()) return strings.text(IDS_SENTENCE_NO_SCHEDULE);
    const ScheduleRecord* const schedule = names.schedules.find(stored);
    if (schedule == nullptr) return fillIn(strings.text(IDS_SENTENCE_UNKNOWN_SCHEDULE), {stored});
    if (schedule->key != kDefaultScheduleKey)
        return fillIn(strings.text(IDS_SENTENCE_DURING), {names.schedule(stored)});
    return strings.text(triggerOf(record) == Trigger::kTimeOfDay ? IDS_SENTENCE_ANY_DAY : IDS_SENTENCE_ANY_TIME);
}

std::string triggerClause(const EventRecord& record, const StringTable& strings, const EventNames& names) {
    const std::string schedule = schedulePhrase(record, strings, names);
    const auto filled = [&](unsigned id, std::initializer_list<FillValue> values) {
        return fillIn(strings.text(id), values);
    };
    const std::uint32_t code = record.triggerType.value_or(0);
    switch (triggerOf(record)) {
        case Trigger::kNone:
            return filled(IDS_SENTENCE_NO_TRIGGER, {schedule});
        case Trigger::kServerConnection:
            return filled(IDS_SENTENCE_SERVER, {schedule});
        case Trigger::kTimeOfDay:
            if (record.timeOfDay >= kQuarterHoursPerDay) return filled(IDS_SENTENCE_NO_TIME, {schedule});
            return filled(IDS_SENTENCE_TIME, {timeOfDayText(static_cast<int>(record.timeOfDay), strings), schedule});
        default:
            break;
    }
    if (code > static_cast<std::uint32_t>(Trigger::kTimeOfDay))
        return filled(IDS_SENTENCE_UNKNOWN_TRIGGER, {static_cast<long>(code), schedule});
    const NamedPlace source = placeOf(record.triggerDevice, record.triggerGroupKey, names);
    const unsigned first = IDS_SENTENCE_BUTTON_ON_DEVICE + (code - 1) * kPlaceCount;
    if (source.kind == kNowhere) return filled(first + kNowhere, {schedule});
    return filled(first + source.kind, {source.name, schedule});
}

// ---------------------------------------------------------------------------------------------------------------------
// What

// "5 seconds", "1 minute"; empty without a delay.
std::string delayText(const EventRecord& record, const StringTable& strings) {
    const std::uint32_t seconds = record.timeoutType == kDelayed ? record.timeoutSeconds : 0;
    if (seconds == 0) return {};
    const bool isMinutes = seconds % kSecondsPerMinute == 0;
    const std::uint32_t count = isMinutes ? seconds / kSecondsPerMinute : seconds;
    const unsigned one = isMinutes ? IDS_SENTENCE_ONE_MINUTE : IDS_SENTENCE_ONE_SECOND;
    const unsigned several = isMinutes ? IDS_SENTENCE_MINUTES : IDS_SENTENCE_SECONDS;
    return fillIn(strings.text(count == 1 ? one : several), {static_cast<long>(count)});
}

// The patterns of a response at a device; for one that has something to play or to read and lacks it, other ones.
struct ResponsePatterns {
    unsigned first = 0;
    std::string content;  // filled in first; empty: nothing is
};

ResponsePatterns responsePatterns(const EventRecord& record, const EventNames& names) {
    const std::string_view message = receivedText(record.messageKey);
    const std::string_view file = receivedText(record.ttsFilename);
    const bool hasPayload = !receivedText(record.fileGuid).empty();
    switch (responseOf(record)) {
        case Response::kActivateRelay:
            return {IDS_SENTENCE_RELAY_RESPONSE_ON_DEVICE, {}};
        case Response::kDeactivateRelay:
            return {IDS_SENTENCE_RELAY_RESPONSE_OFF_DEVICE, {}};
        case Response::kServerAudio:
            if (message.empty()) return {IDS_SENTENCE_NO_AUDIO_DEVICE, {}};
            return {IDS_SENTENCE_AUDIO_DEVICE, names.message(message)};
        case Response::kTtsFile:
            if (file.empty()) return {IDS_SENTENCE_NO_FILE_DEVICE, {}};
            return {IDS_SENTENCE_FILE_DEVICE, std::string(file)};
        default:
            if (!hasPayload) return {IDS_SENTENCE_NO_TEXT_DEVICE, {}};
            return {IDS_SENTENCE_TEXT_DEVICE, {}};
    }
}

std::string emailClause(const EventRecord& record, const StringTable& strings) {
    const std::string delay = delayText(record, strings);
    const unsigned first = receivedText(record.fileGuid).empty() ? IDS_SENTENCE_NO_EMAIL : IDS_SENTENCE_EMAIL;
    return fillIn(strings.text(first + (delay.empty() ? 0 : 1)), {delay});
}

std::string responseClause(const EventRecord& record, const StringTable& strings, const EventNames& names) {
    const std::uint32_t code = record.responseType.value_or(0);
    if (code > static_cast<std::uint32_t>(Response::kTtsMessage))
        return fillIn(strings.text(IDS_SENTENCE_UNKNOWN_RESPONSE), {static_cast<long>(code)});
    if (responseOf(record) == Response::kNone) return strings.text(IDS_SENTENCE_NO_RESPONSE);
    if (responseOf(record) == Response::kEmail) return emailClause(record, strings);
    const auto [first, content] = responsePatterns(record, names);
    const NamedPlace place = placeOf(record.responseDevice, record.responseGroupKey, names);
    const std::string delay = delayText(record, strings);
    const std::string pattern = strings.text(first + place.kind * 2 + (delay.empty() ? 0 : 1));
    if (content.empty() && place.kind == kNowhere) return fillIn(pattern, {delay});
    if (content.empty()) return fillIn(pattern, {place.name, delay});
    if (place.kind == kNowhere) return fillIn(pattern, {content, delay});
    return fillIn(pattern, {content, place.name, delay});
}

}  // namespace

std::string eventSentence(const EventRecord& record, const StringTable& strings, const EventNames& names) {
    return fillIn(strings.text(IDS_SENTENCE_WHOLE),
                  {triggerClause(record, strings, names), responseClause(record, strings, names)});
}

}  // namespace orvc
