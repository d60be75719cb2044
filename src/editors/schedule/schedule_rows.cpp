#include "editors/schedule/schedule_rows.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>
#include <utility>

#include "resources/resource.h"

namespace orvc {
namespace {

// The same in every language.
constexpr std::array<const char*, WeekMask::kDays> kDayNames{"Su ", "Mo ", "Tu ", "We ", "Th ", "Fr ", "Sa "};

int countSlots(const WeekMask& mask, int day) {
    int count = 0;
    for (int slot = 0; slot < WeekMask::kSlotsPerDay; ++slot)
        count += mask.isSet(day, slot) ? 1 : 0;
    return count;
}

std::string describeDays(const WeekMask& mask, const StringTable& strings) {
    std::string days;
    int used = 0;
    for (int day = 0; day < WeekMask::kDays; ++day) {
        if (countSlots(mask, day) == 0) continue;
        days += kDayNames[static_cast<std::size_t>(day)];
        ++used;
    }
    if (used == WeekMask::kDays) return strings.text(IDS_EVERY_DAY);
    return used == 0 ? strings.text(IDS_NO_DAYS) : days;
}

std::string describeTimes(const WeekMask& mask, const StringTable& strings) {
    return strings.text(mask == WeekMask::everySlot() ? IDS_ALL_DAY : IDS_VARIABLE_TIMES);
}

}  // namespace

bool ScheduleRows::fill(const std::list<ScheduleRecord>& records) {
    std::vector<ScheduleRow> rows;
    rows.reserve(records.size());
    for (const ScheduleRecord& record : records) {
        const bool isListed = record.key == kDefaultScheduleKey || (record.key && record.hours && record.name);
        if (isListed && !removedKeys_.contains(*record.key)) rows.push_back(makeRow(record));
    }
    std::ranges::stable_sort(rows, {}, [](const ScheduleRow& row) {
        return std::tuple(row.key != kDefaultScheduleKey, std::string_view(row.sortKey), std::string_view(row.key));
    });
    if (rows == rows_) return false;
    rows_ = std::move(rows);
    if (selectedKey_ && !rowOf(*selectedKey_)) selectedKey_.reset();
    return true;
}

ScheduleRow ScheduleRows::makeRow(const ScheduleRecord& record) const {
    const WeekMask mask = record.hours.value_or(WeekMask{});
    ScheduleRow row;
    row.key = *record.key;
    row.name = record.name.value_or(std::string());
    row.days = describeDays(mask, strings_);
    row.times = describeTimes(mask, strings_);
    row.sortKey = makeSortKey_(row.name);
    return row;
}

std::optional<std::size_t> ScheduleRows::rowOf(const std::string& key) const {
    const auto found = std::ranges::find(rows_, key, &ScheduleRow::key);
    if (found == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows_.begin());
}

void ScheduleRows::select(int row) {
    selectedKey_.reset();
    if (row >= 1 && static_cast<std::size_t>(row) < rows_.size())
        selectedKey_ = rows_[static_cast<std::size_t>(row)].key;
}

std::optional<std::size_t> ScheduleRows::selectedRow() const {
    return selectedKey_ ? rowOf(*selectedKey_) : std::nullopt;
}

void ScheduleRows::removeSelected() {
    if (const auto row = selectedRow()) rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(*row));
    if (selectedKey_) removedKeys_.insert(*std::exchange(selectedKey_, std::nullopt));
}

}  // namespace orvc
