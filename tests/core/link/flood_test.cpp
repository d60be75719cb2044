#include <gtest/gtest.h>

#include "counted_new.h"
#include "fake_log_system.h"
#include "fake_window.h"
#include "flood.h"

namespace orvc {
namespace {

#ifdef __SANITIZE_THREAD__
constexpr std::uint32_t kNotifications = 100'000;
#else
constexpr std::uint32_t kNotifications = 1'000'000;
#endif

// How many of the window's messages of its own wait in the queue that holds 10,000, and how often a post is refused.
class FloodTest : public testing::TestWithParam<std::pair<std::size_t, std::size_t>> {};

TEST_P(FloodTest, EveryNotificationArrivesInOrderAndTheMemoryComesBack) {
    FakeLogSystem system;
    FakeClock clock;
    TrackingLog log(system, clock);
    log.endStartUp();
    FakeWindow window;
    Flood* flood = nullptr;
    EventQueue eventQueue(window, [&](const std::unique_ptr<QueuedEvent>& block) { flood->receive(*block); });
    Flood here(eventQueue, log, clock);
    flood = &here;
    const std::size_t before = allocatedBytes();
    std::size_t most = before;
    for (std::size_t i = 0; i < GetParam().first; ++i)
        window.post(0, 0, 0);
    window.refuseEvery = GetParam().second;
    here.start(kNotifications);
    // A window that is full stays so for a while: nothing but its timer wakes it.
    if (GetParam().first != 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    while (here.received() < kNotifications && window.waitForMessage()) {
        window.take();
        most = std::max(most, allocatedBytes());
        if (!eventQueue.drain()) window.requestTimer();
    }
    here.join();
    EXPECT_EQ(here.received(), kNotifications);
    EXPECT_TRUE(eventQueue.drain());
    window.take().shrink_to_fit();
    event_memory::finishPiece();
    EXPECT_EQ(allocatedBytes(), before);
    RecordProperty("most_kib", static_cast<int>((most - before) / 1024));
}

INSTANTIATE_TEST_SUITE_P(Windows, FloodTest, testing::Values(std::pair(0, 0), std::pair(10'000, 0), std::pair(0, 3)));

}  // namespace
}  // namespace orvc
