// The rows of the schedule list: the Schedules that can be shown, ordered by name, the built-in one first.
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "model/event_rows.h"
#include "model/schedule.h"
#include "support/string_table.h"

namespace orvc {

// A row's texts. It names its Schedule by key and holds no record.
struct ScheduleRow {
    std::string key;
    std::string name;
    std::string days;   // "Every Day", "<none>" or as in "Mo Tu ", with the blank behind the last
    std::string times;  // "All Day" or "Variable"
    std::string sortKey;

    friend bool operator==(const ScheduleRow&, const ScheduleRow&) = default;
};

// Purpose: knows what the schedule list shows and which row is selected, without a window.
// Thread: user-interface thread. Lifetime: `strings` outlives the rows.
// Guarantees: the selection stays with its Schedule wherever the row moves; the built-in Schedule is never selected.
class ScheduleRows {
  public:
    ScheduleRows(const StringTable& strings, SortKeyMaker makeSortKey)
        : strings_(strings), makeSortKey_(std::move(makeSortKey)) {}

    // Lists what `records` holds by now, but for rows that were removed. Returns whether any row is another than
    // before.
    bool fill(const std::list<ScheduleRecord>& records);

    std::size_t size() const { return rows_.size(); }
    const ScheduleRow& at(std::size_t row) const { return rows_[row]; }
    std::optional<std::size_t> rowOf(const std::string& key) const;

    // The operator chose that row, or none for a negative one. Row 0 selects nothing.
    void select(int row);
    // The selected row; empty when there is none. With one, a Schedule can be modified and its row be deleted.
    std::optional<std::size_t> selectedRow() const;
    std::optional<std::string> selectedKey() const { return selectedKey_; }
    // Takes the selected row away, here only and for good, and selects nothing.
    void removeSelected();

  private:
    // Of a record that has a key.
    ScheduleRow makeRow(const ScheduleRecord& record) const;

    const StringTable& strings_;
    SortKeyMaker makeSortKey_;
    std::vector<ScheduleRow> rows_;
    std::set<std::string> removedKeys_;
    std::optional<std::string> selectedKey_;
};

}  // namespace orvc
