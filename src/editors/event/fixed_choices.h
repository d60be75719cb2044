// What the Event editor's fixed lists hold.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "model/event_record.h"
#include "support/string_table.h"
#include "support/time_of_day.h"

namespace orvc {

// Positions in the timeout list.
enum class Timeout { kNone = 0, kImmediately = 1, kAfter = 2 };

inline constexpr int kTriggerCount = 10;
inline constexpr int kTimeoutValueCount = 60;
inline constexpr int kTimeOfDayCount = 1 + kQuarterHoursPerDay;  // with the placeholder

// In the order of the trigger codes.
std::vector<std::string> listTriggers(const StringTable& strings);
std::vector<std::string> listTimeouts(const StringTable& strings);
std::vector<std::string> listTimeoutValues();
std::vector<std::string> listTimeoutUnits(const StringTable& strings);
// The placeholder, then every quarter hour from midnight on: the entry's index minus one is what an Event stores.
std::vector<std::string> listTimesOfDay(const StringTable& strings);

// The responses that a trigger offers, none first, in list order.
std::span<const Response> responsesFor(Trigger trigger);
std::string responseName(Response response, const StringTable& strings);

// Whether a trigger may wait before it responds: the three activations.
bool hasTimeout(Trigger trigger);

}  // namespace orvc
