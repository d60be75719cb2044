#include "editors/event/save_warnings.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "model/guid.h"
#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

constexpr std::uint32_t kDelayed = 1;  // the stored timing type of "Trigger after"
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::size_t kMostCharacters = 20;
constexpr char kQuote = '"';

// The file keeps one byte for all of these, 0xFF, which comes back as itself.
bool isLost(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 && byte != 0xFF;
}

bool hasPayloadFile(Response response) {
    return response == Response::kTtsMessage || response == Response::kEmail;
}

Trigger triggerOf(const EventRecord& record) {
    const std::uint32_t code = record.triggerType.value_or(0);
    return code < kTriggerCount ? static_cast<Trigger>(code) : Trigger::kNone;
}

// The response that the editor showed when it had loaded the Event.
Response shownResponseOf(const EventRecord& record) {
    const auto stored = static_cast<Response>(record.responseType.value_or(0));
    const auto offered = responsesFor(triggerOf(record));
    return std::ranges::find(offered, stored) != offered.end() ? stored : Response::kNone;
}

// The lists still show what was made of that many seconds when the Event was loaded.
bool isDelayAsLoaded(const EventForm& form, std::int64_t seconds) {
    const std::int64_t minutes = seconds / kSecondsPerMinute;
    return form.timeoutUnit() == minutes && form.timeoutValue() == (minutes != 0 ? minutes : seconds);
}

void addDelay(const EventForm& form, const EventRecord& opened, const EventRecord& saved, SaveWarnings& warnings) {
    const std::uint32_t stored = opened.timeoutSeconds;
    if (saved.timeoutSeconds == stored) return;
    const bool wasUsed = hasTimeout(triggerOf(opened)) && opened.timeoutType == kDelayed;
    if (saved.timeoutType == kDelayed) {
        if (isDelayAsLoaded(form, stored))
            warnings.push_back({IDS_SAVE_DELAY_CUT, {std::to_string(stored), std::to_string(saved.timeoutSeconds)}});
    } else if (!wasUsed && form.trigger() == triggerOf(opened)) {
        warnings.push_back({IDS_SAVE_DELAY_DROPPED, {std::to_string(stored)}});
    }
}

// Of a response that the editor never showed.
void addForgotten(const EventForm& form, const EventRecord& opened, const EventRecord& saved, SaveWarnings& warnings) {
    const Response shown = shownResponseOf(opened);
    const auto isForgotten = [](const std::optional<std::string>& before, const std::optional<std::string>& after) {
        return !before.value_or("").empty() && after.value_or("").empty();
    };
    if (shown != Response::kServerAudio && isForgotten(opened.messageKey, saved.messageKey))
        warnings.push_back({IDS_SAVE_AUDIO_DROPPED, {}});
    if (shown != Response::kTtsFile && isForgotten(opened.ttsFilename, saved.ttsFilename))
        warnings.push_back({IDS_SAVE_TTS_FILE_DROPPED, {}});
    if (!hasPayloadFile(shown) && !hasPayloadFile(form.response()) && !opened.fileGuid.value_or("").empty())
        warnings.push_back({IDS_SAVE_PAYLOAD_DROPPED, {}});
}

void append(SaveWarnings& warnings, SaveWarnings more) {
    warnings.insert(warnings.end(), more.begin(), more.end());
}

}  // namespace

std::string lostCharacters(std::string_view text) {
    std::array<bool, 256> isListed{};
    std::size_t count = 0;
    std::string listed;
    for (const char c : text) {
        if (!isLost(c) || isListed[static_cast<unsigned char>(c)]) continue;
        isListed[static_cast<unsigned char>(c)] = true;
        if (!listed.empty()) listed += ' ';
        if (++count > kMostCharacters) return listed + "...";
        listed += c;
    }
    return listed;
}

bool spoilsPayloadFile(const EventEmail& email) {
    return std::ranges::any_of(std::array{&email.from, &email.to, &email.subject},
                               [](const std::string* field) { return field->find(kQuote) != std::string::npos; });
}

SaveWarnings warningsForText(std::string_view text) {
    const std::string lost = lostCharacters(text);
    return lost.empty() ? SaveWarnings() : SaveWarnings{{IDS_SAVE_CHARACTERS, {lost}}};
}

SaveWarnings warningsForEmail(const EventEmail& email) {
    SaveWarnings warnings;
    if (spoilsPayloadFile(email)) warnings.push_back({IDS_SAVE_QUOTE, {}});
    append(warnings, warningsForText(email.body));
    return warnings;
}

SaveWarnings warningsFor(const EventForm& form, const std::optional<EventRecord>& opened) {
    SaveWarnings warnings;
    if (opened) {
        EventRecord saved = *opened;
        form.fill(saved);
        addDelay(form, *opened, saved, warnings);
        addForgotten(form, *opened, saved, warnings);
    }
    if (form.response() == Response::kTtsMessage) append(warnings, warningsForText(form.spokenText()));
    if (form.response() == Response::kEmail) {
        if (!form.email().cc.empty() || !form.email().bc.empty()) warnings.push_back({IDS_SAVE_COPIES_DROPPED, {}});
        append(warnings, warningsForEmail(form.email()));
    }
    return warnings;
}

std::string textOf(const SaveWarnings& warnings, const StringTable& strings) {
    std::string text;
    for (const SaveWarning& warning : warnings) {
        const auto value = [&](std::size_t index) {
            return index < warning.values.size() ? std::string_view(warning.values[index]) : std::string_view();
        };
        if (!text.empty()) text += ' ';
        text += fillIn(strings.text(warning.text), {value(0), value(1)});
    }
    return text;
}

}  // namespace orvc
