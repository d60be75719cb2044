#include "view/window_texts.h"

#include <algorithm>
#include <initializer_list>

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

constexpr std::size_t kNamesAsked = 5;

std::string joined(const StringTable& strings, std::initializer_list<std::string> parts) {
    std::string text;
    for (const std::string& part : parts) {
        if (part.empty()) continue;
        if (!text.empty()) text += strings.text(IDS_LIST_SEPARATOR);
        text += part;
    }
    return text;
}

std::string counted(const StringTable& strings, unsigned id, std::size_t count) {
    return fillIn(strings.text(id), {numberText(strings, count)});
}

// Behind `text`, which may end with a full stop.
std::string withReason(const std::string& text, const LinkStatus& link) {
    if (link.reason.empty()) return text;
    return text + (text.ends_with('.') ? " " : ". ") + link.reason + ".";
}

std::string timeText(const LocalTime& time) {
    return formatText("%02d:%02d", time.hour, time.minute);
}

}  // namespace

std::string numberText(const StringTable& strings, std::size_t number) {
    constexpr std::ptrdiff_t kGroup = 3;
    std::string text = std::to_string(number);
    const std::string separator = strings.text(IDS_DIGIT_GROUPS);
    for (auto at = std::ssize(text) - kGroup; at > 0; at -= kGroup)
        text.insert(static_cast<std::size_t>(at), separator);
    return text;
}

std::string eventCountText(const StringTable& strings, std::size_t count) {
    return counted(strings, count == 1 ? IDS_COUNT_EVENT : IDS_COUNT_EVENTS, count);
}

std::string linkText(const StringTable& strings, const LinkStatus& link) {
    switch (link.stage) {
        case LinkStage::kNotConnected:
            return withReason(strings.text(IDS_LINK_NONE), link);
        case LinkStage::kReceiving:
            return strings.text(IDS_LINK_RECEIVING);
        case LinkStage::kConnected:
            break;
    }
    if (link.isStandalone) return strings.text(IDS_LINK_STANDALONE);
    return fillIn(strings.text(IDS_LINK_CONNECTED), {link.address, static_cast<long>(link.port), link.logonId});
}

std::string countText(const StringTable& strings, const ListCounts& counts) {
    const bool isNarrowed = counts.shown != counts.total;
    return joined(strings,
                  {eventCountText(strings, counts.total),
                   isNarrowed ? counted(strings, IDS_COUNT_SHOWN, counts.shown) : std::string(),
                   counts.selected > 0 ? counted(strings, IDS_COUNT_SELECTED, counts.selected) : std::string()});
}

std::string stateText(const StringTable& strings, const ListCounts& counts) {
    return joined(
        strings, {counts.disabled > 0 ? counted(strings, IDS_COUNT_DISABLED, counts.disabled) : std::string(),
                  counts.withProblems > 0 ? counted(strings, IDS_COUNT_PROBLEMS, counts.withProblems) : std::string()});
}

std::string selectionText(const StringTable& strings, const ListCounts& counts) {
    const std::size_t available = counts.total - counts.disabled;
    const std::string states = joined(
        strings,
        {available > 0 ? counted(strings, IDS_COUNT_AVAILABLE, available) : std::string(), stateText(strings, counts)});
    return fillIn(strings.text(IDS_DETAIL_SELECTED), {eventCountText(strings, counts.total), states});
}

std::string reasonText(const StringTable& strings, const StartResult& failure) {
    switch (failure.code) {
        case logon_result::kSuccess:
            return strings.text(IDS_REASON_NO_RIGHTS);
        case logon_result::kTimedOut:
            return strings.text(IDS_REASON_NO_ANSWER);
        case logon_result::kServerNotFound:
            return strings.text(IDS_REASON_NOT_FOUND);
        case logon_result::kInvalid:
            return strings.text(IDS_REASON_INVALID);
        case logon_result::kAlreadyLoggedIn:
            return strings.text(IDS_REASON_IN_USE);
        case logon_result::kInvalidOrAlreadyLoggedIn:
            return strings.text(IDS_REASON_INVALID_OR_IN_USE);
        case logon_result::kIncompatibleVersion:
            return strings.text(IDS_REASON_INCOMPATIBLE);
        default:
            return fillIn(strings.text(IDS_REASON_OTHER), {long{failure.code}});
    }
}

std::string bannerText(const StringTable& strings, const LinkStatus& link) {
    if (link.stage != LinkStage::kNotConnected || !link.wasConnected) return {};
    const std::string lost =
        fillIn(strings.text(IDS_LINK_BANNER), {link.address, static_cast<long>(link.port), timeText(link.lostAt)});
    return withReason(lost, link);
}

std::string emptyListText(const StringTable& strings, const LinkStatus& link, const ListCounts& counts,
                          const FilterShown& filter) {
    if (counts.shown > 0) return {};
    if (link.stage == LinkStage::kNotConnected) return strings.text(IDS_EMPTY_NO_LOGON);
    if (link.stage == LinkStage::kReceiving) return counted(strings, IDS_EMPTY_RECEIVING, counts.total);
    if (counts.total == 0) return strings.text(IDS_EMPTY_NO_EVENTS);
    const std::string all = numberText(strings, counts.total);
    if (!filter.words.empty()) return fillIn(strings.text(IDS_EMPTY_NO_MATCH), {filter.words, all});
    if (filter.byProblems) return strings.text(IDS_EMPTY_NO_PROBLEMS);
    return fillIn(strings.text(IDS_EMPTY_NONE_SHOWN), {all});
}

std::string deletionQuestion(const StringTable& strings, const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kNamesAsked); ++i)
        list.append(i > 0 ? "\n" : "").append(names[i]);
    if (names.size() > kNamesAsked)
        list.append("\n").append(counted(strings, IDS_DELETE_EVENTS_MORE, names.size() - kNamesAsked));
    return fillIn(strings.text(IDS_DELETE_EVENTS), {numberText(strings, names.size()), list});
}

std::string outcomeText(const StringTable& strings, unsigned done, const std::vector<ChangeResult>& results) {
    const auto count = [&](auto isCounted) {
        return static_cast<std::size_t>(std::ranges::count_if(results, isCounted, &ChangeResult::outcome));
    };
    const std::size_t stored = count([](Outcome outcome) { return outcome == Outcome::kStored; });
    const std::size_t cancelled = count([](Outcome outcome) { return outcome == Outcome::kCancelled; });
    const std::size_t failed = results.size() - stored - cancelled;
    std::string text;
    const auto add = [&text](const std::string& sentence) { text.append(text.empty() ? "" : " ").append(sentence); };
    if (stored > 0 && done != 0) add(fillIn(strings.text(done), {eventCountText(strings, stored)}));
    if (cancelled > 0) add(fillIn(strings.text(IDS_DONE_CANCELLED), {eventCountText(strings, cancelled)}));
    if (failed > 0) add(failed == 1 ? strings.text(IDS_NOT_STORED_ONE) : counted(strings, IDS_NOT_STORED_MANY, failed));
    return text;
}

}  // namespace orvc
