// Time as the console needs it. Everything that reads a time or waits for one takes a Clock, so that tests set it.
#pragma once

#include <cstdint>
#include <string>

namespace orvc {

// A point in time as the wall clock of this workstation shows it.
struct LocalTime {
    int year = 1970;
    int month = 1;  // 1 to 12
    int day = 1;    // day of the month, from 1
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 4;  // 0 = Sunday
};

class Clock {
  public:
    virtual ~Clock() = default;

    // Seconds since 1 January 1970 UTC.
    virtual std::int64_t now() const = 0;

    // Milliseconds of a counter that only grows until it wraps around after some 49 days; its start means nothing.
    virtual std::uint32_t tickCount() const = 0;

    // `seconds` (since 1970 UTC) in the local time zone.
    virtual LocalTime toLocal(std::int64_t seconds) const = 0;
};

// The machine's clock. Any thread.
class SystemClock final : public Clock {
  public:
    std::int64_t now() const override;
    std::uint32_t tickCount() const override;
    LocalTime toLocal(std::int64_t seconds) const override;
};

// The 24-character date of the C library, without its line feed: "Sat Nov 21 09:05:00 2026". The names are English
// whatever the locale, and the day is padded with a blank.
std::string formatDate(const LocalTime& time);

}  // namespace orvc
