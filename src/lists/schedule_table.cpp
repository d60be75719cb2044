#include "lists/schedule_table.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

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

ScheduleTable::ScheduleTable(const StringTable& strings, SortKeyMaker makeSortKey, CountUsers countUsers)
    : strings_(strings),
      countUsers_(std::move(countUsers)),
      model_(
          // The built-in one, then the names in the locale's order, and equal names by key.
          [make = std::move(makeSortKey)](const ScheduleRow& row) {
              std::string order(1, row.key == kDefaultScheduleKey ? '\0' : '\1');
              return order.append(make(row.name)).append(1, '\0').append(row.key);
          },
          [](const ScheduleRow& row) { return std::string_view(row.key); }) {}

bool ScheduleTable::fill(const std::list<ScheduleRecord>& records) {
    bool changed = false;
    std::set<std::uint32_t> listed;
    for (const ScheduleRecord& record : records) {
        const bool canBeListed = record.key == kDefaultScheduleKey || (record.key && record.hours && record.name);
        if (!canBeListed || removed_.contains(record.id)) continue;
        listed.insert(record.id);
        ScheduleRow row = makeRow(record);
        const auto [known, isNew] = rows_.try_emplace(record.id);
        if (!isNew && known->second == row) continue;
        known->second = std::move(row);
        changed = true;
        if (isNew)
            model_.insert(known->second);
        else
            model_.reorder(known->second);
    }
    for (auto row = rows_.begin(); row != rows_.end();) {
        if (listed.contains(row->first)) {
            ++row;
            continue;
        }
        model_.erase(row->second);
        row = rows_.erase(row);
        changed = true;
    }
    return changed;
}

ScheduleRow ScheduleTable::makeRow(const ScheduleRecord& record) const {
    const WeekMask mask = record.hours.value_or(WeekMask{});
    const std::size_t users = countUsers_ ? countUsers_(*record.key) : 0;
    return {record.id,
            *record.key,
            record.name.value_or(std::string()),
            describeDays(mask, strings_),
            describeTimes(mask, strings_),
            users > 0 ? std::to_string(users) : std::string()};
}

std::string ScheduleTable::cell(std::size_t row, std::size_t column) const {
    static constexpr std::array<std::string ScheduleRow::*, kColumnCount> kTexts{
        &ScheduleRow::name, &ScheduleRow::days, &ScheduleRow::times, &ScheduleRow::users};
    return at(row).*kTexts.at(column);
}

std::optional<std::size_t> ScheduleTable::rowOf(std::uint32_t id) const {
    const auto found = rows_.find(id);
    return found != rows_.end() ? model_.rowOf(found->second) : std::nullopt;
}

void ScheduleTable::select(int row) {
    const bool canBeSelected = row >= 1 && static_cast<std::size_t>(row) < size();
    model_.selectOnly(canBeSelected ? std::optional(static_cast<std::size_t>(row)) : std::nullopt);
}

std::optional<std::uint32_t> ScheduleTable::selectedId() const {
    const auto row = selectedRow();
    return row ? std::optional(at(*row).id) : std::nullopt;
}

void ScheduleTable::removeSelected() {
    const auto id = selectedId();
    if (!id) return;
    removed_.insert(*id);
    model_.erase(rows_.at(*id));
    rows_.erase(*id);
}

}  // namespace orvc
