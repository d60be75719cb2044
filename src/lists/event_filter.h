// What the operator types to find Events.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lists/event_columns.h"
#include "lists/text_folder.h"
#include "support/string_table.h"

namespace orvc {

// Which Events a filter looks at.
enum class EventState { kAll, kAvailable, kDisabled, kWithProblems };

// What must be found in an Event.
struct FilterTerm {
    std::string text;                     // folded, never empty
    std::optional<EventColumnId> column;  // where; nothing = in any column

    friend bool operator==(const FilterTerm&, const FilterTerm&) = default;
};

// Takes what was typed apart. All terms must be found, wherever they stand:
//
//   door east          two words
//   "front door"       a phrase; the last one needs no quotation mark at its end
//   source:door        a word or phrase in one column. The prefixes are those of English and of the language in use.
//
// Any bytes will do. A prefix that is not known belongs to its word; a known one without a word says nothing. No term
// occurs twice, and longer ones come first.
std::vector<FilterTerm> parseFilter(std::string_view text, const StringTable& strings, const TextFolder& fold);

// What to type to find the Events that show `value` in a column, one of those that have a prefix. Empty when `value`
// holds nothing to look for.
std::string filterTextFor(EventColumnId column, std::string_view value, const StringTable& strings);

}  // namespace orvc
