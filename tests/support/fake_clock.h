// A clock that stands still until a test sets it. Its time zone is UTC.
#pragma once

#include <ctime>

#include "support/clock.h"

namespace orvc {

class FakeClock final : public Clock {
  public:
    std::int64_t now() const override { return seconds; }
    std::uint32_t tickCount() const override { return ticks; }
    LocalTime toLocal(std::int64_t time) const override {
        const std::time_t point = time;
        std::tm t{};
        gmtime_r(&point, &t);
        return {t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, t.tm_wday};
    }

    std::int64_t seconds = 1'795'251'900;  // Sat Nov 21 09:05:00 2026
    std::uint32_t ticks = 0xFFFFFFF0;      // about to wrap around
};

}  // namespace orvc
