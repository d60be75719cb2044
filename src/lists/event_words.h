// Values of an Event in the words of the operator.
#pragma once

#include <cstdint>
#include <string>

#include "support/string_table.h"

namespace orvc {

inline constexpr std::uint32_t kQuarterHoursPerDay = 96;

// "07:15 AM", "Noon". `quarter` hours after midnight, less than 96.
std::string timeOfDayText(std::uint32_t quarter, const StringTable& strings);

// "Immediately", "90 seconds", "2 minutes": whole minutes count as minutes.
std::string delayText(std::uint32_t seconds, const StringTable& strings);

}  // namespace orvc
