#include "model/event_rows.h"

#include <algorithm>
#include <array>

namespace orvc {

// Among the rows that have their place.
std::size_t EventRows::firstNotLess(std::string_view sortKey) const {
    const auto less = [](const EventRecord* record, std::string_view key) { return record->sortKey < key; };
    const auto end = rows_.begin() + static_cast<std::ptrdiff_t>(settled_);
    const auto found =
        sorted_ ? std::lower_bound(rows_.begin(), end, sortKey, less)
                : std::find_if(rows_.begin(), end, [&](const EventRecord* record) { return !less(record, sortKey); });
    return static_cast<std::size_t>(found - rows_.begin());
}

void EventRows::insert(EventRecord& record) {
    record.sortKey = makeSortKey_(record.name.value_or(std::string()));
    if (sorted_) {
        if (rows_.size() - settled_ == kMostWaiting) settle();
        rows_.push_back(&record);
    } else {
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(firstNotLess(record.sortKey)), &record);
        settled_ = rows_.size();
    }
    record.hasRow = true;
    touch();
}

// Of equal names the newest comes first. Needs no memory that could be lacking.
void EventRows::settleInserted() const {
    std::array<EventRecord*, kMostWaiting> inserted;
    const auto rowAt = [this](std::size_t row) { return rows_.begin() + static_cast<std::ptrdiff_t>(row); };
    const auto end = std::reverse_copy(rowAt(settled_), rows_.end(), inserted.begin());
    std::stable_sort(inserted.begin(), end,
                     [](const EventRecord* a, const EventRecord* b) { return a->sortKey < b->sortKey; });
    // From the last one on: all rows between two of them move up together.
    auto to = rows_.end();
    for (auto record = end; record != inserted.begin();) {
        --record;
        const std::size_t row = firstNotLess((*record)->sortKey);
        to = std::move_backward(rowAt(row), rowAt(settled_), to);
        *--to = *record;
        settled_ = row;
    }
    settled_ = rows_.size();
}

void EventRows::remove(EventRecord& record) {
    const auto row = rowOf(record);
    if (!row) return;
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(*row));
    settled_ = rows_.size();
    record.hasRow = false;
    touch();
}

void EventRows::rename(EventRecord& record) {
    std::string sortKey = makeSortKey_(record.name.value_or(std::string()));
    if (sortKey == record.sortKey) return;
    const auto row = rowOf(record);
    record.sortKey = std::move(sortKey);
    if (!row) return;
    const bool afterPrevious = *row == 0 || rows_[*row - 1]->sortKey <= record.sortKey;
    const bool beforeNext = *row + 1 == rows_.size() || record.sortKey <= rows_[*row + 1]->sortKey;
    sorted_ = sorted_ && afterPrevious && beforeNext;
}

std::optional<std::size_t> EventRows::rowOf(const EventRecord& record) const {
    if (!record.hasRow) return std::nullopt;
    settle();
    // In an ordered list the record stands among its equals; elsewhere anywhere.
    const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(sorted_ ? firstNotLess(record.sortKey) : 0);
    const auto found = std::find(from, rows_.end(), &record);
    if (found == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows_.begin());
}

void EventRows::clear() {
    for (EventRecord* record : rows_)
        record->hasRow = false;
    rows_.clear();
    settled_ = 0;
    sorted_ = true;
    touch();
}

}  // namespace orvc
