// All Schedules, the built-in one first.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "link/variable_store.h"
#include "model/schedule.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// Who follows the Schedules. Called on the user-interface thread, after the change.
class ScheduleListObserver {
  public:
    virtual ~ScheduleListObserver() = default;
    // A Schedule has come, or its key, name or hours have changed. `former` is the key or the name that it had until
    // now and has no longer; empty when it has both of them still.
    virtual void scheduleChanged(const ScheduleRecord& record, std::string_view former) = 0;
    // The record is no longer in the list and about to be freed.
    virtual void scheduleGone(const ScheduleRecord& record) = 0;
    // So were all of them.
    virtual void schedulesCleared() = 0;
};

// Purpose: builds Schedule records from variables as they arrive. It writes nothing.
// Thread: user-interface thread. Cost: constant per variable.
// Lifetime: a record lives until clear(), which makes the built-in one again.
class ScheduleList final : public VariableOwner {
  public:
    ScheduleList(TrackingLog& log, const Clock& clock);

    // At most one; it outlives the list or is taken away with null.
    void observe(ScheduleListObserver* observer) { observer_ = observer; }

    // Claims every name below \ORVS\Schedules\<key>\.
    bool updateScheduleVariables(const Variable& variable);
    bool updateVariable(const Variable& variable) override { return updateScheduleVariables(variable); }

    // Another console deleted the Schedule: removes its record.
    void removeKey(std::string_view path) override;

    // The first record with that key, and the one with that number; null when there is none.
    const ScheduleRecord* find(std::string_view key) const;
    const ScheduleRecord* findById(std::uint32_t id) const;

    // Takes over what was saved: replaces the name and the hours of the record with its number or key, or appends it.
    // Values that arrive under its key reach this record from then on. Returns the record in the list.
    ScheduleRecord& store(const ScheduleRecord& saved);

    // Takes other hours into a record of the list, here only.
    void setHours(const ScheduleRecord& record, const WeekMask& hours);

    // Removes the record here.
    void remove(const ScheduleRecord& record);

    // Whether a record came, changed or went since the last call. Clears every record's `updated` flag: the schedule
    // list, which asks, is what consumes it.
    bool takeUpdates();

    // Makes the built-in Schedule when the list is empty.
    void makeDefault();
    void clear();

    // In list order; records may be incomplete.
    const std::list<ScheduleRecord>& records() const { return records_; }

  private:
    ScheduleRecord& findOrCreate(std::string_view key);
    ScheduleRecord& own(const ScheduleRecord& record);  // of the list, as one that can be changed
    ScheduleRecord& append(std::list<ScheduleRecord>& made, const std::string& path);
    void setField(ScheduleRecord& record, std::string_view field, const Variable& variable);
    void tell(const ScheduleRecord& record, const std::optional<std::string>& former = std::nullopt);
    void testCompleteness(ScheduleRecord& record);

    TrackingLog& log_;
    const Clock& clock_;
    ScheduleListObserver* observer_ = nullptr;
    std::list<ScheduleRecord> records_;
    // By the path component under which a record was made, whatever a Key value named it since, and by the key under
    // which it was saved here.
    std::unordered_map<std::string, ScheduleRecord*> byPath_;
    std::uint32_t lastId_ = 0;
    bool changed_ = false;  // a record was saved here or has gone since the last takeUpdates()
};

}  // namespace orvc
