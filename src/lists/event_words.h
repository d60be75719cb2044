// Values of an Event in the words of the operator.
#pragma once

#include <cstdint>
#include <string>

#include "support/string_table.h"

namespace orvc {

// "Immediately", "90 seconds", "2 minutes": whole minutes count as minutes.
std::string delayText(std::uint32_t seconds, const StringTable& strings);

}  // namespace orvc
