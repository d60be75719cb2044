// Which Schedule an Event means.
#pragma once

#include <string_view>
#include <unordered_map>

#include "model/schedule_list.h"

namespace orvc {

// Purpose: finds Schedules as the Event editor does. An Event names its Schedule by key; one that another tool wrote
// may name it by name. Keys come first, and of equal ones the Schedule that stands first in the list. A Schedule that
// lacks its key or its name is not found. Thread: user-interface thread. Cost: constant; the first search after
// forget() looks at each Schedule once. Lifetime: the list outlives the finder. Whoever changes the list calls forget()
// before the next search.
class ScheduleFinder {
  public:
    explicit ScheduleFinder(const ScheduleList& schedules) : schedules_(schedules) {}

    // Null when there is none.
    const ScheduleRecord* find(std::string_view keyOrName) const;

    // The Schedules have changed. Needs no memory.
    void forget();

  private:
    using Map = std::unordered_map<std::string_view, const ScheduleRecord*>;  // the texts view the records'

    void learn() const;

    const ScheduleList& schedules_;
    mutable Map byKey_;
    mutable Map byName_;
    mutable bool isLearnt_ = false;
};

}  // namespace orvc
