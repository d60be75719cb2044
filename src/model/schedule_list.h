// All Schedules, the built-in one first.
#pragma once

#include <list>
#include <string_view>
#include <unordered_map>

#include "link/server_link.h"
#include "link/variable_store.h"
#include "model/schedule.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// Purpose: builds Schedule records from variables as they arrive, and writes them.
// Thread: user-interface thread. Cost: constant per variable.
// Lifetime: a record lives until clear(), which makes the built-in one again.
class ScheduleList final : public VariableOwner {
  public:
    ScheduleList(ServerLink& link, TrackingLog& log, const Clock& clock);

    // Claims every name below \ORVS\Schedules\<key>\.
    bool updateScheduleVariables(const Variable& variable);
    bool updateVariable(const Variable& variable) override { return updateScheduleVariables(variable); }

    // The first record with that key; null when there is none.
    ScheduleRecord* find(std::string_view key);

    // Appends `record` unless there is one with its key, and writes it either way. Returns the record in the list.
    ScheduleRecord& add(const ScheduleRecord& record);
    void write(const ScheduleRecord& record);

    // Whether a record came, changed or went since the last call. Clears every record's `updated` flag: the schedule
    // list, which asks, is what consumes it.
    bool takeUpdates();

    // Makes the built-in Schedule when the list is empty.
    void makeDefault();
    void clear();

    // In list order; records may be incomplete.
    const std::list<ScheduleRecord>& records() const { return records_; }
    std::list<ScheduleRecord>& records() { return records_; }

  private:
    ScheduleRecord& findOrCreate(std::string_view key);
    void setField(ScheduleRecord& record, std::string_view field, const Variable& variable);
    void testCompleteness(ScheduleRecord& record);

    ServerLink& link_;
    TrackingLog& log_;
    const Clock& clock_;
    std::list<ScheduleRecord> records_;
    // By the path component under which a record was made, whatever a Key value named it since.
    std::unordered_map<std::string, ScheduleRecord*> byPath_;
    bool cleared_ = false;  // since the last takeUpdates()
};

}  // namespace orvc
