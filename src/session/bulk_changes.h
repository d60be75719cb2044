// Changes of many Events at once, for the gate.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/event_record.h"
#include "session/change.h"
#include "support/string_table.h"

namespace orvc {

// The records are copied. Thread: any; errors: std::bad_alloc.
using EventRecords = std::vector<const EventRecord*>;

// Switches Events on or off, and writes nothing else of them. Those that already are as wanted are left out. One whose
// `Disabled` was never received counts as disabled.
std::vector<Change> changesToDisable(const EventRecords& records, bool disabled);

// Gives Events another Schedule, and writes nothing else of them. Those that have it already are left out.
std::vector<Change> changesToAssignSchedule(const EventRecords& records, const std::string& scheduleKey);

std::vector<Change> changesToDelete(const EventRecords& records);

// A disabled copy of an Event that has never fired, with a key, a name and a payload file of its own.
EventChange changeToDuplicate(const EventRecord& original, const std::string& key, const std::string& name,
                              PayloadFile payload);

// The name of a copy: "Copy of X", or with the lowest number that makes it new, "Copy (2) of X".
std::string nameOfCopy(const StringTable& strings, const std::string& name,
                       const std::function<bool(const std::string&)>& isTaken);

}  // namespace orvc
