// Texts that many rows have in common: each is kept, folded and made ready for sorting once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lists/sort_key.h"
#include "lists/text_folder.h"

namespace orvc {

// Purpose: gives each distinct text a number. Number 0 is the empty text. A text never changes; the pool only grows
// until clear() or keepOnly(). Thread: user-interface thread. What returns a view returns one that is valid until the
// next intern(). Errors: what needs memory throws std::bad_alloc and changes nothing then.
class TextPool {
  public:
    using Id = std::uint32_t;

    TextPool(TextFolder fold, SortKeyMaker makeSortKey);
    Id intern(std::string_view text);
    std::size_t size() const { return entries_.size(); }
    std::string_view text(Id id) const { return view(entries_[id].text); }
    std::string_view folded(Id id) const { return view(entries_[id].folded); }

    // ---- Order

    // Prepares compare() for that text, whatever other texts come.
    void prepareToCompare(Id id);
    // Below 0, 0 or above 0, as the first text comes before the second one, with it or after it. Both were prepared.
    int compare(Id a, Id b) const { return sortKey(a).compare(sortKey(b)); }
    // A number for each of `ids`, by text, in a vector as long as the pool: smaller for a text that comes before, the
    // same for texts that compare as equal. Prepares compare() for them.
    std::vector<std::uint32_t> rank(std::vector<Id> ids);

    // Forgets every text whose number is not marked and numbers the others anew. `numbers`, as long as the pool, holds
    // 1 for each text to keep, and holds the new number of it afterwards.
    void keepOnly(std::vector<Id>& numbers);
    void clear();

    const TextFolder& folder() const { return fold_; }

  private:
    struct Span {
        std::uint32_t at = 0;
        std::uint32_t size = 0;
    };
    struct Entry {
        Span text;
        Span folded;  // the same as `text` when both are
    };

    std::string_view view(Span span) const { return {bytes_.data() + span.at, span.size}; }
    Span append(std::string_view text);
    // Where the text's number stands in the index, or would stand.
    std::size_t placeOf(std::string_view text) const;
    void growIndex();
    Id add(std::string_view text, std::string_view folded);
    const std::string& sortKey(Id id) const;

    TextFolder fold_;
    SortKeyMaker makeSortKey_;
    std::string bytes_;
    std::vector<Entry> entries_{1};
    std::vector<Id> index_;  // by hash, at most half full; a number that is taken goes to the next free place; 0 = free
    std::vector<std::string> sortKeys_;  // of the first texts; empty until they are asked for
};

}  // namespace orvc
