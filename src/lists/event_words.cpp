#include "lists/event_words.h"

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {

std::string delayText(std::uint32_t seconds, const StringTable& strings) {
    constexpr std::uint32_t kSecondsPerMinute = 60;
    if (seconds == 0) return strings.text(IDS_DELAY_NONE);
    const bool isMinutes = seconds % kSecondsPerMinute == 0;
    const std::uint32_t count = isMinutes ? seconds / kSecondsPerMinute : seconds;
    const unsigned one = isMinutes ? IDS_DELAY_MINUTE : IDS_DELAY_SECOND;
    const unsigned several = isMinutes ? IDS_DELAY_MINUTES : IDS_DELAY_SECONDS;
    // As a text: the number may be too large for a long.
    return fillIn(strings.text(count == 1 ? one : several), {std::to_string(count)});
}

}  // namespace orvc
