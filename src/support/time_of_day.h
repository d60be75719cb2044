// Times of day as a person reads them.
#pragma once

#include <string>

#include "support/string_table.h"

namespace orvc {

inline constexpr int kQuarterHoursPerDay = 96;

// The time `quarter` quarter hours after midnight, 0 to 95: "Midnight", "08:15 AM", "Noon", "06:00 PM".
std::string timeOfDayText(int quarter, const StringTable& strings);

}  // namespace orvc
