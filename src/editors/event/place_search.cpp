#include "editors/event/place_search.h"

#include <algorithm>
#include <utility>

namespace orvc {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isWordPart(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

// A number begins a word of its own: "Ward12" has two.
bool beginsWord(const std::string& text, std::size_t at) {
    if (!isWordPart(text[at])) return false;
    return at == 0 || !isWordPart(text[at - 1]) || (isDigit(text[at]) && !isDigit(text[at - 1]));
}

std::string withoutLeadingZeros(const std::string& text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isLeading = text[at] == '0' && (result.empty() || !isDigit(result.back()));
        if (isLeading && at + 1 < text.size() && isDigit(text[at + 1])) continue;
        result += text[at];
    }
    return result;
}

constexpr int kNotFound = 8;
constexpr int kInNumber = 4;      // not in the name
constexpr int kLargerNumber = 2;  // the typed number is only the beginning of that in the text
constexpr int kLaterWord = 1;

// How far from what was typed: 0 = its very beginning.
int distanceIn(const std::string& text, const std::string& wanted) {
    int best = kNotFound;
    for (std::size_t at = 0; at + wanted.size() <= text.size(); ++at) {
        if (!beginsWord(text, at) || text.compare(at, wanted.size(), wanted) != 0) continue;
        const std::size_t end = at + wanted.size();
        const bool isLarger = isDigit(wanted.back()) && end < text.size() && isDigit(text[end]);
        best = std::min(best, (isLarger ? kLargerNumber : 0) + (at > 0 ? kLaterWord : 0));
    }
    return best;
}

int distanceIn(const SearchText& entry, const std::string& wanted) {
    const int inName = distanceIn(entry.name, wanted);
    return inName != kNotFound ? inName : std::min(kNotFound, kInNumber + distanceIn(entry.number, wanted));
}

}  // namespace

SearchText searchTextOf(const Place& place) {
    if (place.kind == PlaceKind::kNone) return {};
    constexpr std::string_view kColon = ": ";
    const std::size_t colon = place.text.find(kColon);
    const std::string name = colon == std::string::npos ? place.text : place.text.substr(colon + kColon.size());
    const std::size_t bracket = place.kind == PlaceKind::kDevice ? name.rfind('(') : std::string::npos;
    if (bracket == std::string::npos) return {name, {}};
    return {name.substr(0, bracket), name.substr(bracket)};
}

void PlaceSearch::reset(std::function<std::vector<SearchText>()> entries) {
    source_ = std::move(entries);
    entries_.clear();
    isRead_ = false;
    typed_.clear();
}

void PlaceSearch::readEntries() {
    if (std::exchange(isRead_, true) || !source_) return;
    entries_ = source_();
    for (SearchText& entry : entries_)
        for (std::string* const text : {&entry.name, &entry.number})
            *text = withoutLeadingZeros(fold_(*text));
}

std::optional<std::size_t> PlaceSearch::type(char c, std::uint32_t now, int current) {
    readEntries();
    if (!isTyping(now)) typed_.clear();
    lastTyped_ = now;
    typed_ += c;
    const std::string wanted = withoutLeadingZeros(fold_(typed_));
    const bool isRepeated = typed_.find_first_not_of(c) == std::string::npos;
    if (wanted.empty()) return std::nullopt;
    // Typed after a pause, a letter goes on from a match that is chosen already.
    if (typed_.size() == 1 && !isDigit(c)) return findNext(wanted, current);
    if (const auto found = findBest(wanted)) return found;
    return isRepeated && !isDigit(c) ? findNext(fold_(std::string(1, c)), current) : std::nullopt;
}

std::optional<std::size_t> PlaceSearch::findBest(const std::string& wanted) const {
    const auto distance = [&](const SearchText& entry) { return distanceIn(entry, wanted); };
    const auto best = std::ranges::min_element(entries_, {}, distance);
    if (best == entries_.end() || distance(*best) == kNotFound) return std::nullopt;
    return static_cast<std::size_t>(best - entries_.begin());
}

// The next match behind the chosen entry, if that is one; else the best one.
std::optional<std::size_t> PlaceSearch::findNext(const std::string& wanted, int current) const {
    const auto at = static_cast<std::size_t>(current);
    if (current < 0 || at >= entries_.size() || distanceIn(entries_[at], wanted) == kNotFound) return findBest(wanted);
    for (std::size_t step = 1; step < entries_.size(); ++step) {
        const std::size_t next = (at + step) % entries_.size();
        if (distanceIn(entries_[next], wanted) != kNotFound) return next;
    }
    return at;
}

}  // namespace orvc
