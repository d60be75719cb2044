#include "support/time_of_day.h"

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

constexpr int kQuartersPerHalfDay = kQuarterHoursPerDay / 2;

}  // namespace

std::string timeOfDayText(int quarter, const StringTable& strings) {
    if (quarter == 0) return strings.text(IDS_MIDNIGHT);
    if (quarter == kQuartersPerHalfDay) return strings.text(IDS_NOON);
    const int hour = quarter / 4 % 12;
    const unsigned format = quarter < kQuartersPerHalfDay ? IDS_TIME_AM : IDS_TIME_PM;
    return fillIn(strings.text(format), {long{hour == 0 ? 12 : hour}, long{quarter % 4 * 15}});
}

}  // namespace orvc
