// The schedule list without a window: the Schedules that can be shown, ordered by name, the built-in one first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

#include "lists/list_model.h"
#include "lists/list_source.h"
#include "lists/sort_key.h"
#include "model/schedule.h"
#include "support/string_table.h"

namespace orvc {

// A row's texts. It names its Schedule by the record's number: several may have one key.
struct ScheduleRow {
    std::uint32_t id = 0;
    std::string key;
    std::string name;
    std::string days;   // "Every Day", "<none>" or as in "Mo Tu ", with the blank behind the last
    std::string times;  // "All Day" or "Variable"
    std::string users;  // how many Events use it; empty for none

    friend bool operator==(const ScheduleRow&, const ScheduleRow&) = default;
};

// Purpose: knows what the schedule list shows and which row is selected.
// Thread: user-interface thread. Lifetime: `strings` outlives the table, which holds no record.
// Guarantees: the selection stays with its Schedule wherever the row moves; the built-in Schedule is never selected.
class ScheduleTable final : public ListSource {
  public:
    enum Column : std::size_t { kName, kDays, kTimes, kUsers, kColumnCount };

    // How many Events use the Schedule with that key.
    using CountUsers = std::function<std::size_t(const std::string& key)>;

    ScheduleTable(const StringTable& strings, SortKeyMaker makeSortKey, CountUsers countUsers = nullptr);

    // Lists what `records` holds by now, but for rows that were removed. Returns whether any row is another than
    // before.
    bool fill(const std::list<ScheduleRecord>& records);

    std::size_t size() const override { return model_.size(); }
    std::string cell(std::size_t row, std::size_t column) const override;
    const ScheduleRow& at(std::size_t row) const { return model_.at(row); }
    // Of the record with that number; nothing when it has no row.
    std::optional<std::size_t> rowOf(std::uint32_t id) const;

    // The operator chose that row, or none for a negative one. Row 0 selects nothing.
    void select(int row);
    // Nothing when there is none. With one, a Schedule can be modified and its row be deleted.
    std::optional<std::size_t> selectedRow() const { return model_.firstSelected(); }
    // The number of the selected row's record.
    std::optional<std::uint32_t> selectedId() const;
    // Takes the selected row away, here only and for good, and selects nothing.
    void removeSelected();

  private:
    // Of a record that has a key.
    ScheduleRow makeRow(const ScheduleRecord& record) const;

    const StringTable& strings_;
    CountUsers countUsers_;
    std::unordered_map<std::uint32_t, ScheduleRow> rows_;  // by the records' numbers
    ListModel<ScheduleRow> model_;
    std::set<std::uint32_t> removed_;
};

}  // namespace orvc
