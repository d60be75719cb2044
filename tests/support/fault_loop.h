// Makes the first, second, third, … call of something fail, until a run passes untouched.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

namespace orvc {

// Which calls fail. Any thread.
class FaultPlan {
  public:
    // From the n-th call on one fails, or all do. 0 = none.
    void arm(int first, bool lasting) {
        calls_ = 0;
        lasting_ = lasting;
        first_ = first;
    }
    void lift() { first_ = 0; }
    bool fails() {
        const int first = first_;
        if (first == 0) return false;
        const int call = ++calls_;
        return lasting_ ? call >= first : call == first;
    }
    bool hasFailed(int first) const { return calls_ >= first; }

  private:
    std::atomic<int> first_{0};
    std::atomic<int> calls_{0};
    std::atomic<bool> lasting_{false};
};

// Runs `run(lasting)` with each call failing in turn, first once and then for good. `run` may lift the fault.
inline void forEachFault(FaultPlan& plan, const std::function<void(bool lasting)>& run) {
    for (const bool lasting : {false, true}) {
        int first = 0;
        bool touched = true;
        while (touched && !testing::Test::HasFailure()) {
            SCOPED_TRACE(testing::Message() << (lasting ? "calls from " : "call ") << first + 1 << " fail");
            plan.arm(++first, lasting);
            run(lasting);
            plan.lift();
            touched = plan.hasFailed(first);
        }
        EXPECT_GT(first, 1) << "nothing ever failed";
        testing::Test::RecordProperty(lasting ? "lasting" : "passing", first - 1);
    }
}

}  // namespace orvc
