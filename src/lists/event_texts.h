// The texts of all Events, kept in the form in which they are searched and sorted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lists/event_columns.h"
#include "lists/event_matcher.h"
#include "lists/event_values.h"
#include "lists/text_pool.h"

namespace orvc {

// Purpose: knows what each row of the Event list shows, by the row's slot in the list. What has changed is worked out
// when it is asked for, so that a row may change as often as it likes while nobody filters or sorts. Thread:
// user-interface thread. Lifetime: `source` and the records outlive their use. Memory: some 60 bytes for an Event, its
// folded name and time, and each text that Events share once. Errors: what needs memory throws std::bad_alloc; what it
// was asked for may be done in part then, and is done when asked again.
class EventTexts {
  public:
    using Slot = std::uint32_t;

    EventTexts(const EventTextSource& source, TextFolder fold, SortKeyMaker makeSortKey);

    // ---- Rows

    // A row is about to come into that slot.
    void add(Slot slot, const EventRecord& record);
    // Its record, or what that refers to, has changed. `renamed` when it may stand behind another name now: see
    // renamed().
    void changed(Slot slot, bool renamed);
    void allChanged();
    void forget(Slot slot);
    void clear();

    // Works out up to `most` rows, so that the next filter or sort finds them done. Returns whether any are left.
    bool prepare(std::size_t most);

    // Brings the row up to date.
    const EventValues& values(Slot slot);
    // Of all rows, brought up to date, by slot.
    std::vector<EventValues> allValues();
    // Rows that changed() called renamed since the last forgetRenamed().
    std::vector<const EventRecord*> renamed() const;
    void forgetRenamed();

    // ---- Filter

    // `matcher` decides from here on what passes() says, for all rows at once.
    void filterBy(EventMatcher matcher);
    // Whether a row passes the filter. Without the memory to find out it does.
    bool passes(Slot slot) noexcept;

    TextPool& pool() { return pool_; }
    const TextPool& pool() const { return pool_; }

    // Forgets texts that nobody shows any more, when they have become many. `others` are values of rows that were kept
    // elsewhere; they name the texts by their new numbers afterwards.
    void forgetUnused(std::span<EventValues> others);

  private:
    struct Row {
        const EventRecord* record = nullptr;
        EventValues values;
        std::uint32_t ownAt = 0;  // in own_
        std::uint32_t ownSize = 0;
        bool isFresh = false;
        bool isRenamed = false;
    };
    // What is known of a row and the filter.
    enum class Verdict : std::uint8_t { kUnknown, kPasses, kFails };

    void refresh(Row& row);
    void judge(Slot slot);
    TextPool::Id textOf(EventColumnId column, const EventRecord& record);
    TextPool::Id scheduleOf(const EventRecord& record);
    void setOwn(Row& row, const std::string& text);
    void compactOwn();
    std::string_view own(const Row& row) const { return {own_.data() + row.ownAt, row.ownSize}; }

    const EventTextSource& source_;
    TextPool pool_;
    std::vector<Row> rows_;          // by slot; without a record where there is none
    std::vector<Verdict> verdicts_;  // by slot: a filter of ten thousands of rows should touch little memory
    Slot unprepared_ = 0;            // rows below are fresh or have changed since
    std::string own_;                // folded names and times
    std::size_t ownUsed_ = 0;
    std::optional<EventMatcher> matcher_;
    std::unordered_map<std::uint64_t, TextPool::Id> byCode_;       // of column and code
    std::unordered_map<std::string, TextPool::Id> scheduleNames_;  // by key; until the next change
    std::size_t poolAfterLastCare_ = 0;
};

}  // namespace orvc
