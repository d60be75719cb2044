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

void ScheduleEdit::save(ScheduleList& schedules) const {
    ScheduleRecord* listed = schedules.find(*record_.key);
    if (listed == nullptr) {
        schedules.add(record_);
        return;
    }
    listed->name = record_.name;
    takeDaysOver(*listed);
    schedules.write(*listed);
}

void ScheduleEdit::cancel(ScheduleList& schedules) const {
    if (ScheduleRecord* listed = schedules.find(*record_.key)) takeDaysOver(*listed);
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
