// A Schedule while the editor has it: a copy, and how it comes back into the list.
#pragma once

#include <string>

#include "model/schedule_list.h"
#include "session/change.h"

namespace orvc {

// Purpose: lets the editor write into a record of its own while the list's records come and go.
// Thread: user-interface thread.
// Guarantees: days that the operator did not change stay as the list has them by then.
class ScheduleEdit {
  public:
    // A new Schedule: no name, no slot on.
    explicit ScheduleEdit(std::string key);
    // A Schedule of the list.
    explicit ScheduleEdit(const ScheduleRecord& listed);

    // What the editor shows and changes. Its key and mask are present.
    ScheduleRecord& record() { return record_; }

    // What Save wants changed: the Schedule as the list has it by now, under the new name and with the days that were
    // changed; a new one when the list has none (any more).
    ScheduleChange change(const ScheduleList& schedules) const;
    // Writes nothing. Days that were committed before the operator cancelled stay, here, in the list's record.
    void cancel(ScheduleList& schedules) const;

  private:
    const ScheduleRecord* listedIn(const ScheduleList& schedules) const;
    WeekMask hoursFor(const ScheduleRecord& listed) const;

    ScheduleRecord record_;
    WeekMask before_;
};

}  // namespace orvc
