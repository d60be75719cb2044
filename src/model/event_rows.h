// The rows of the Event list: complete Events, ordered by name.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/event_record.h"

namespace orvc {

// Makes a text whose byte order is the locale's order of names without regard to case.
using SortKeyMaker = std::function<std::string(std::string_view name)>;

// Purpose: knows which record stands in which row, without a window. A few hundred insertions wait and find their rows
// together, at the latest when somebody asks for a row: of a hundred thousand Events that pour in each would else move
// half of the others.
// Thread: user-interface thread. The records are owned by EventList and are removed here before they are freed.
class EventRows {
  public:
    explicit EventRows(SortKeyMaker makeSortKey) : makeSortKey_(std::move(makeSortKey)) {}

    std::size_t size() const { return rows_.size(); }
    EventRecord& at(std::size_t row) const {
        settle();
        return *rows_[row];
    }

    // Puts the record before the first row whose name is not less than its own.
    void insert(EventRecord& record);
    void remove(EventRecord& record);
    // The record's name may have changed: its row stays where it is.
    void rename(EventRecord& record);
    // Empty when the record has no row.
    std::optional<std::size_t> rowOf(const EventRecord& record) const;
    void clear();

    // Grows with every change of a row or of what it shows: lets the window repaint once for many.
    std::uint64_t revision() const { return revision_; }
    void touch() { ++revision_; }

  private:
    static constexpr std::size_t kMostWaiting = 256;

    std::size_t firstNotLess(std::string_view sortKey) const;
    void settle() const {
        if (settled_ != rows_.size()) settleInserted();
    }
    void settleInserted() const;

    SortKeyMaker makeSortKey_;
    mutable std::vector<EventRecord*> rows_;
    mutable std::size_t settled_ = 0;  // rows from here on were inserted, in this order, and wait for their place
    bool sorted_ = true;               // false once a name changed in place and broke the order
    std::uint64_t revision_ = 0;
};

}  // namespace orvc
