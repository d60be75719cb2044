// All Schedules, the built-in one first.
#pragma once

#include <list>
#include <string_view>
#include <unordered_map>

#include "link/variable_store.h"
#include "model/schedule.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// Purpose: builds Schedule records from variables as they arrive. It writes nothing.
// Thread: user-interface thread. Cost: constant per variable.
// Lifetime: a record lives until clear(), which makes the built-in one again.
class ScheduleList final : public VariableOwner {
  public:
    ScheduleList(TrackingLog& log, const Clock& clock);

    // Claims every name below \ORVS\Schedules\<key>\.
    bool updateScheduleVariables(const Variable& variable);
    bool updateVariable(const Variable& variable) override { return updateScheduleVariables(variable); }

    // Another console deleted the Schedule: removes its record.
    void removeKey(std::string_view path) override;

    // The first record with that key, and the one with that number; null when there is none.
    ScheduleRecord* find(std::string_view key);
    ScheduleRecord* findById(std::uint32_t id);

    // Takes over what was saved: replaces the name and the hours of the record with its number or key, or appends it.
    // Values that arrive under its key reach this record from then on. Returns the record in the list.
    ScheduleRecord& store(const ScheduleRecord& saved);

    // Removes the record here.
    void remove(ScheduleRecord& record);

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
    ScheduleRecord& append(std::list<ScheduleRecord>& made, const std::string& path);
    void setField(ScheduleRecord& record, std::string_view field, const Variable& variable);
    void testCompleteness(ScheduleRecord& record);

    TrackingLog& log_;
    const Clock& clock_;
    std::list<ScheduleRecord> records_;
    // By the path component under which a record was made, whatever a Key value named it since, and by the key under
    // which it was saved here.
    std::unordered_map<std::string, ScheduleRecord*> byPath_;
    std::uint32_t lastId_ = 0;
    bool changed_ = false;  // a record was saved here or has gone since the last takeUpdates()
};

}  // namespace orvc
