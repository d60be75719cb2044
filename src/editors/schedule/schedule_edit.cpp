#include "editors/schedule/schedule_edit.h"

#include <algorithm>
#include <utility>

namespace orvc {

ScheduleEdit::ScheduleEdit(std::string key) {
    record_.name.emplace();
    record_.key = std::move(key);
    record_.hours.emplace();
}

ScheduleEdit::ScheduleEdit(const ScheduleRecord& listed) : record_(listed) {
    if (!record_.key) record_.key.emplace();
    if (!record_.hours) record_.hours.emplace();
    before_ = *record_.hours;
}

const ScheduleRecord* ScheduleEdit::listedIn(const ScheduleList& schedules) const {
    const ScheduleRecord* const same = record_.id != 0 ? schedules.findById(record_.id) : nullptr;
    return same != nullptr ? same : schedules.find(*record_.key);
}

ScheduleChange ScheduleEdit::change(const ScheduleList& schedules) const {
    const ScheduleRecord* const listed = listedIn(schedules);
    if (listed == nullptr) return {std::nullopt, record_};
    ScheduleChange change{*listed, *listed};
    change.after->name = record_.name;
    change.after->hours = hoursFor(*listed);
    return change;
}

void ScheduleEdit::cancel(ScheduleList& schedules) const {
    if (const ScheduleRecord* const listed = listedIn(schedules)) schedules.setHours(*listed, hoursFor(*listed));
}

// The hours that the list has by now, with the days that the operator changed.
WeekMask ScheduleEdit::hoursFor(const ScheduleRecord& listed) const {
    WeekMask hours = listed.hours.value_or(before_);
    const auto& before = before_.bytes();
    const auto& after = record_.hours->bytes();
    for (std::size_t first = 0; first < after.size(); first += WeekMask::kBytesPerDay) {
        const auto begin = after.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = begin + WeekMask::kBytesPerDay;
        if (!std::equal(begin, end, before.begin() + static_cast<std::ptrdiff_t>(first)))
            std::copy(begin, end, hours.bytes().begin() + static_cast<std::ptrdiff_t>(first));
    }
    return hours;
}

}  // namespace orvc
