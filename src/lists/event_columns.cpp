#include "lists/event_columns.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "lists/event_words.h"
#include "model/mac.h"
#include "resources/resource.h"
#include "support/time_of_day.h"

namespace orvc {
namespace {

std::string nameText(const EventRecord& record, const EventTextSource&) {
    return record.name.value_or(std::string());
}

std::string statusText(const EventRecord& record, const EventTextSource& source) {
    static constexpr std::array kTexts{IDS_STATUS_AVAILABLE, IDS_STATUS_DISABLED, IDS_STATUS_ERROR};
    return source.strings.text(kTexts[static_cast<std::size_t>(eventStatus(record, source))]);
}

std::optional<std::uint32_t> statusCode(const EventRecord& record, const EventTextSource& source) {
    return static_cast<std::uint32_t>(eventStatus(record, source));
}

std::string lastEventText(const EventRecord& record, const EventTextSource& source) {
    const std::uint32_t lastTriggered = record.lastTriggered.value_or(0);
    return lastTriggered == 0 ? source.strings.text(IDS_NEVER) : formatDate(source.clock.toLocal(lastTriggered));
}

// Codes that are known; this one stands for all others.
constexpr std::uint32_t kResponses = static_cast<std::uint32_t>(Response::kTtsMessage) + 1;
constexpr std::uint32_t kTriggers = static_cast<std::uint32_t>(Trigger::kTimeOfDay) + 1;

std::optional<std::uint32_t> responseCode(const EventRecord& record, const EventTextSource&) {
    return std::min(record.responseType.value_or(kResponses), kResponses);
}

std::string responseText(const EventRecord& record, const EventTextSource& source) {
    return source.strings.text(IDS_RESPONSE_NONE + *responseCode(record, source));
}

std::optional<std::uint32_t> triggerCode(const EventRecord& record, const EventTextSource&) {
    return std::min(record.triggerType.value_or(kTriggers), kTriggers);
}

std::string triggerText(const EventRecord& record, const EventTextSource& source) {
    const std::uint32_t code = *triggerCode(record, source);
    // The editor's text of the first is a prompt.
    if (code == 0) return source.strings.text(IDS_TRIGGER_NOT_CHOSEN);
    return source.strings.text(code < kTriggers ? IDS_TRIGGER_NONE + code : IDS_TRIGGER_UNKNOWN);
}

// A device by its name, or by its address when it has none or is not known; otherwise a group, whose key is its name.
std::string placeText(const KSMac& mac, const std::optional<std::string>& group, const EventTextSource& source) {
    if (isNoDevice(mac)) return group.value_or(std::string());
    const Device* const device = source.directory != nullptr ? source.directory->findDevice(mac) : nullptr;
    return device != nullptr && !device->name().empty() ? std::string(device->name()) : formatMac(mac);
}

bool isTriggeredBy(const EventRecord& record, Trigger trigger) {
    return record.triggerType == static_cast<std::uint32_t>(trigger);
}

std::string sourceText(const EventRecord& record, const EventTextSource& source) {
    if (isTriggeredBy(record, Trigger::kServerConnection)) return source.strings.text(IDS_SOURCE_SERVER);
    if (!isTriggeredBy(record, Trigger::kTimeOfDay))
        return placeText(record.triggerDevice, record.triggerGroupKey, source);
    // A time that no clock shows is told as it is stored.
    if (record.timeOfDay >= kQuarterHoursPerDay) return std::to_string(record.timeOfDay);
    return timeOfDayText(static_cast<int>(record.timeOfDay), source.strings);
}

std::optional<std::uint32_t> sourceCode(const EventRecord& record, const EventTextSource&) {
    if (!isTriggeredBy(record, Trigger::kTimeOfDay)) return std::nullopt;
    return record.timeOfDay;
}

std::string delayColumnText(const EventRecord& record, const EventTextSource& source) {
    return delayText(eventDelay(record), source.strings);
}

std::optional<std::uint32_t> delayCode(const EventRecord& record, const EventTextSource&) {
    return eventDelay(record);
}

// A record names its Schedule by key; one that another tool wrote may name it by name.
std::string scheduleText(const EventRecord& record, const EventTextSource& source) {
    if (!record.scheduleKey || source.schedules == nullptr) return record.scheduleKey.value_or(std::string());
    for (const ScheduleRecord& schedule : source.schedules->records())
        if (schedule.key == record.scheduleKey && schedule.name) return *schedule.name;
    return *record.scheduleKey;
}

std::string destinationText(const EventRecord& record, const EventTextSource& source) {
    return placeText(record.responseDevice, record.responseGroupKey, source);
}

std::string contentText(const EventRecord& record, const EventTextSource& source) {
    switch (static_cast<Response>(record.responseType.value_or(0))) {
        case Response::kServerAudio: {
            const std::string key = record.messageKey.value_or(std::string());
            const AudioMessage* const message =
                source.directory != nullptr ? source.directory->findMessage(key) : nullptr;
            return message != nullptr && !message->name().empty() ? std::string(message->name()) : key;
        }
        case Response::kTtsFile:
            return record.ttsFilename.value_or(std::string());
        case Response::kEmail:
        case Response::kTtsMessage:
            // What is said or sent lies in a file on the server.
            return record.fileGuid && !record.fileGuid->empty() ? source.strings.text(IDS_CONTENT_ON_SERVER)
                                                                : std::string();
        default:
            return {};
    }
}

std::string problemText(const EventRecord& record, const EventTextSource& source) {
    return source.problemText ? source.problemText(record) : std::string();
}

constexpr std::array<EventColumn, kEventColumnCount> kColumns{{
    {IDS_COLUMN_EVENT_NAME, "name", 38, nameText, nullptr},
    {IDS_COLUMN_STATUS, "status", 15, statusText, statusCode},
    {IDS_COLUMN_LAST_EVENT, "last", 22, lastEventText, nullptr},
    {IDS_COLUMN_RESPONSE, "response", 25, responseText, responseCode},
    {IDS_COLUMN_TRIGGER, "trigger", 25, triggerText, triggerCode},
    {IDS_COLUMN_SOURCE, "source", 25, sourceText, sourceCode},
    {IDS_COLUMN_DELAY, "delay", 15, delayColumnText, delayCode},
    {IDS_COLUMN_SCHEDULE, "schedule", 25, scheduleText, nullptr},
    {IDS_COLUMN_DESTINATION, "destination", 25, destinationText, nullptr},
    {IDS_COLUMN_CONTENT, "content", 25, contentText, nullptr},
    {IDS_COLUMN_PROBLEM, "problem", 38, problemText, nullptr},
}};

}  // namespace

std::span<const EventColumn, kEventColumnCount> eventColumns() {
    return kColumns;
}

bool isBadEvent(const EventRecord& record, const EventTextSource& source) {
    if (record.badData == 1u) return true;
    return source.directory != nullptr && source.isReady && source.isReady() &&
           !isEventValid(record, *source.directory);
}

EventStatus eventStatus(const EventRecord& record, const EventTextSource& source) {
    // An Event whose `Disabled` value has not arrived is shown as disabled.
    if (record.disabled != 0u) return EventStatus::kDisabled;
    return isBadEvent(record, source) ? EventStatus::kError : EventStatus::kAvailable;
}

std::uint32_t eventDelay(const EventRecord& record) {
    constexpr std::uint32_t kAfter = 1;
    return record.timeoutType == kAfter ? record.timeoutSeconds : 0;
}

}  // namespace orvc
