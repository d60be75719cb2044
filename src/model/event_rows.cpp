#include "model/event_rows.h"

#include <algorithm>

namespace orvc {

std::size_t EventRows::firstNotLess(std::string_view sortKey) const {
    const auto less = [](const EventRecord* record, std::string_view key) { return record->sortKey < key; };
    const auto found = sorted_ ? std::lower_bound(rows_.begin(), rows_.end(), sortKey, less)
                               : std::find_if(rows_.begin(), rows_.end(),
                                              [&](const EventRecord* record) { return !less(record, sortKey); });
    return static_cast<std::size_t>(found - rows_.begin());
}

std::size_t EventRows::insert(EventRecord& record) {
    record.sortKey = makeSortKey_(record.name.value_or(std::string()));
    const std::size_t row = firstNotLess(record.sortKey);
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(row), &record);
    record.hasRow = true;
    touch();
    return row;
}

void EventRows::remove(EventRecord& record) {
    const auto row = rowOf(record);
    if (!row) return;
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(*row));
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
    sorted_ = true;
    touch();
}

}  // namespace orvc
