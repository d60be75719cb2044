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

ScheduleRecord* ScheduleEdit::listedIn(ScheduleList& schedules) const {
    ScheduleRecord* const same = record_.id != 0 ? schedules.findById(record_.id) : nullptr;
    return same != nullptr ? same : schedules.find(*record_.key);
}

ScheduleChange ScheduleEdit::change(ScheduleList& schedules) const {
    const ScheduleRecord* const listed = listedIn(schedules);
    if (listed == nullptr) return {std::nullopt, record_};
    ScheduleChange change{*listed, *listed};
    change.after->name = record_.name;
    takeDaysOver(*change.after);
    return change;
}

void ScheduleEdit::cancel(ScheduleList& schedules) const {
    if (ScheduleRecord* const listed = listedIn(schedules)) takeDaysOver(*listed);
}

void ScheduleEdit::takeDaysOver(ScheduleRecord& listed) const {
    if (!listed.hours) listed.hours = before_;
    const auto& before = before_.bytes();
    const auto& after = record_.hours->bytes();
    for (std::size_t first = 0; first < after.size(); first += WeekMask::kBytesPerDay) {
        const auto begin = after.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = begin + WeekMask::kBytesPerDay;
        if (!std::equal(begin, end, before.begin() + static_cast<std::ptrdiff_t>(first)))
            std::copy(begin, end, listed.hours->bytes().begin() + static_cast<std::ptrdiff_t>(first));
    }
}

}  // namespace orvc
