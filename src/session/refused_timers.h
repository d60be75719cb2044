// The timers that a window asked the system for, and was refused.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "session/timers.h"

namespace orvc {

// Purpose: remembers refused timers so that they are asked for again: without its timers the console would stand still.
// Thread: user-interface thread. Allocates nothing.
class RefusedTimers {
  public:
    // `started` says whether the system gave the timer of that period, in milliseconds.
    void note(std::uintptr_t timer, std::uint32_t milliseconds, bool started) {
        if (timer < periods_.size()) periods_[timer] = started ? 0 : milliseconds;
    }
    void forget(std::uintptr_t timer) { note(timer, 0, true); }

    // Calls `start(timer, milliseconds)` for each one, which says whether the timer runs now. Returns whether any is
    // still refused.
    template <typename Start>
    bool retry(const Start& start) {
        bool any = false;
        for (std::size_t timer = 0; timer < periods_.size(); ++timer) {
            if (periods_[timer] == 0) continue;
            note(timer, periods_[timer], start(timer, periods_[timer]));
            any = any || periods_[timer] != 0;
        }
        return any;
    }

  private:
    std::array<std::uint32_t, timer::kLast + 1> periods_{};
};

}  // namespace orvc
