// A million notifications from the library's thread, told through the console's own callback.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "link/event_callback.h"

namespace orvc {

class Flood {
  public:
    Flood(EventQueue& eventQueue, TrackingLog& log, const Clock& clock) : callback_(eventQueue, log, clock, {}) {}

    // The receiver of the event queue: what comes must be the next.
    void receive(const QueuedEvent& block) {
        const auto& variable = static_cast<const VariableEvent&>(block);
        EXPECT_EQ(variable.number(), received_);
        EXPECT_EQ(variable.nameView(), kName);
        ++received_;
    }
    void start(std::uint32_t count) {
        library_ = std::thread([this, first = received_, count] {
            for (std::uint32_t i = first; i < first + count; ++i) {
                const KSVariableNotification told{kName, variable_type::kString, "A name of an Event", i};
                callback_.onEvent(event_code::kVariable, 0, nullptr, &told);
            }
        });
    }
    void join() { library_.join(); }
    std::uint32_t received() const { return received_; }

  private:
    static constexpr const char* kName = "\\ORVS\\Events\\{00000001-0002-0003-0405-060708090A0B}\\EventName";

    EventCallback callback_;
    std::uint32_t received_ = 0;
    std::thread library_;
};

}  // namespace orvc
