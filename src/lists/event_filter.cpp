#include "lists/event_filter.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "resources/resource.h"

namespace orvc {
namespace {

struct Prefix {
    EventColumnId column;
    std::string_view english;
    unsigned word;  // id of the string table
};
constexpr std::array kPrefixes{
    Prefix{EventColumnId::kSource, "source", IDS_FILTER_SOURCE},
    Prefix{EventColumnId::kDestination, "destination", IDS_FILTER_DESTINATION},
    Prefix{EventColumnId::kSchedule, "schedule", IDS_FILTER_SCHEDULE},
    Prefix{EventColumnId::kTrigger, "trigger", IDS_FILTER_TRIGGER},
    Prefix{EventColumnId::kResponse, "response", IDS_FILTER_RESPONSE},
    Prefix{EventColumnId::kProblem, "problem", IDS_FILTER_PROBLEM},
};

constexpr char kQuote = '"';

// Reads a folded text from its beginning to its end.
class Reader {
  public:
    Reader(std::string_view rest, const StringTable& strings, const TextFolder& fold) : rest_(rest) {
        for (const Prefix& prefix : kPrefixes)
            for (std::string word : {std::string(prefix.english), fold(strings.text(prefix.word))})
                if (!word.empty()) prefixes_.emplace_back(std::move(word) + ':', prefix.column);
    }

    // The next term, which may be empty; nothing at the end.
    std::optional<FilterTerm> next() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        if (rest_.empty()) return std::nullopt;
        const auto column = takePrefix();
        const bool isPhrase = rest_.starts_with(kQuote);
        if (isPhrase) rest_.remove_prefix(1);
        const std::size_t end = std::min(rest_.find(isPhrase ? kQuote : ' '), rest_.size());
        std::string text(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        if (text.find_first_not_of(' ') == std::string::npos) text.clear();
        return FilterTerm{std::move(text), column};
    }

  private:
    std::optional<EventColumnId> takePrefix() {
        for (const auto& [word, column] : prefixes_) {
            if (!rest_.starts_with(word)) continue;
            rest_.remove_prefix(word.size());
            return column;
        }
        return std::nullopt;
    }

    std::string_view rest_;
    std::vector<std::pair<std::string, EventColumnId>> prefixes_;
};

}  // namespace

std::vector<FilterTerm> parseFilter(std::string_view text, const StringTable& strings, const TextFolder& fold) {
    std::string folded = fold(text);
    // Tabs and the like part words too.
    std::ranges::replace_if(
        folded, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    std::vector<FilterTerm> terms;
    Reader reader(folded, strings, fold);
    while (auto term = reader.next())
        if (!term->text.empty()) terms.push_back(std::move(*term));
    // The longest first: they rule most Events out.
    std::ranges::sort(terms, [](const FilterTerm& a, const FilterTerm& b) {
        if (a.text.size() != b.text.size()) return a.text.size() > b.text.size();
        return std::tie(a.text, a.column) < std::tie(b.text, b.column);
    });
    terms.erase(std::unique(terms.begin(), terms.end()), terms.end());
    return terms;
}

std::string filterTextFor(EventColumnId column, std::string_view value, const StringTable& strings) {
    const auto* const prefix = std::ranges::find(kPrefixes, column, &Prefix::column);
    if (prefix == kPrefixes.end()) return {};
    std::string word = strings.text(prefix->word);
    if (word.empty()) word = prefix->english;
    std::string text;
    // A quotation mark cannot stand in a phrase: what it parts becomes phrases of their own.
    while (!value.empty()) {
        const std::string_view part = value.substr(0, value.find(kQuote));
        value.remove_prefix(std::min(part.size() + 1, value.size()));
        if (part.find_first_not_of(' ') == std::string_view::npos) continue;
        if (!text.empty()) text += ' ';
        text.append(word).append(1, ':').append(1, kQuote).append(part).append(1, kQuote);
    }
    return text;
}

}  // namespace orvc
