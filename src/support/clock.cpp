#include "support/clock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>

#include "support/text.h"

namespace orvc {

std::int64_t SystemClock::now() const {
    // Not time(): with the C library of Windows it works the calendar out, which costs forty times as much.
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::uint32_t SystemClock::tickCount() const {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

LocalTime SystemClock::toLocal(std::int64_t seconds) const {
    std::tm parts{};
#ifdef _WIN32
    // time_t has 32 bits in a 32-bit program, which end in January 2038.
    const __time64_t time = seconds;
    if (_localtime64_s(&parts, &time) != 0) return {};
#else
    const std::time_t time = seconds;
    if (localtime_r(&time, &parts) == nullptr) return {};
#endif
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
            parts.tm_min,         parts.tm_sec,     parts.tm_wday};
}

std::string formatDate(const LocalTime& time) {
    static constexpr std::array kDays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto day = static_cast<std::size_t>(std::clamp(time.weekday, 0, 6));
    const auto month = static_cast<std::size_t>(std::clamp(time.month, 1, 12) - 1);
    std::string text;
    text.reserve(24);
    const auto append = [&](const char* before, int number, char padding) {
        text += before;
        // Not printf: the filter of the Event list asks for ten thousands of dates at once.
        if (number >= 0 && number < 10) text += padding;
        text += std::to_string(number);
    };
    text.append(kDays[day]).append(1, ' ').append(kMonths[month]);
    append(" ", time.day, ' ');
    append(" ", time.hour, '0');
    append(":", time.minute, '0');
    append(":", time.second, '0');
    return text.append(1, ' ').append(std::to_string(time.year));
}

}  // namespace orvc
