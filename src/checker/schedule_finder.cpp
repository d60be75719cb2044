#include "checker/schedule_finder.h"

namespace orvc {

const ScheduleRecord* ScheduleFinder::find(std::string_view keyOrName) const {
    if (!isLearnt_) learn();
    if (const auto found = byKey_.find(keyOrName); found != byKey_.end()) return found->second;
    const auto found = byName_.find(keyOrName);
    return found != byName_.end() ? found->second : nullptr;
}

void ScheduleFinder::forget() {
    byKey_.clear();
    byName_.clear();
    isLearnt_ = false;
}

void ScheduleFinder::learn() const {
    for (const ScheduleRecord& record : schedules_.records()) {
        if (!record.key || !record.name) continue;
        byKey_.try_emplace(*record.key, &record);
        byName_.try_emplace(*record.name, &record);
    }
    isLearnt_ = true;
}

}  // namespace orvc
