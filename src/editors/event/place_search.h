// Finds the entry of a long list that the operator means by what he types.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "editors/event/place_choices.h"
#include "lists/text_folder.h"

namespace orvc {

// The parts of an entry that are searched. Nothing is found in an entry without a name.
struct SearchText {
    std::string name;
    std::string number;  // searched after all names: the digits that tell devices of one name apart

    friend bool operator==(const SearchText&, const SearchText&) = default;
};

// What is searched of a device or a group: what stands behind "device: " or "group: ". The placeholder has none.
SearchText searchTextOf(const Place& place);

// Purpose: looks for typed letters at the beginning of the names' words. Numbers count as numbers: "12" finds "Ward 12"
// and "Ward 012" before "Ward 120". What stands at the beginning of a name comes before what stands further on; of
// equals the first in the list counts. Letters typed within a second belong together; one letter typed again and again
// goes from one match to the next. Thread: user-interface thread.
class PlaceSearch {
  public:
    explicit PlaceSearch(TextFolder fold) : fold_(std::move(fold)) {}

    // The list was filled: `entries` is called when something is typed for the first time, as long as the list is as it
    // is then.
    void reset(std::function<std::vector<SearchText>()> entries);

    // The entry to choose, by position. `now` counts milliseconds; `current` is the chosen entry, or -1.
    std::optional<std::size_t> type(char c, std::uint32_t now, int current);
    // A blank typed now would continue what was typed before.
    bool isTyping(std::uint32_t now) const { return !typed_.empty() && now - lastTyped_ < kPause; }

  private:
    static constexpr std::uint32_t kPause = 1000;

    void readEntries();
    std::optional<std::size_t> findBest(const std::string& wanted) const;
    std::optional<std::size_t> findNext(const std::string& wanted, int current) const;

    TextFolder fold_;
    std::function<std::vector<SearchText>()> source_;
    std::vector<SearchText> entries_;  // folded
    bool isRead_ = false;
    std::string typed_;
    std::uint32_t lastTyped_ = 0;
};

}  // namespace orvc
