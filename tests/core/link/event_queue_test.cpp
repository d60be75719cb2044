#include "link/event_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "fake_window.h"

namespace orvc {
namespace {

// A block of any kind that knows its place in the order.
struct NumberedBlock final : QueuedEvent {
    NumberedBlock(std::uint32_t message, int blockNumber) : QueuedEvent(message, 0), number(blockNumber) { ++alive; }
    ~NumberedBlock() override { --alive; }
    int number;
    static inline std::atomic<int> alive = 0;
};

std::unique_ptr<QueuedEvent> makeBlock(int number, std::uint32_t message = private_message::kVariable) {
    return std::make_unique<NumberedBlock>(message, number);
}

// Every block that arrives must be the next in the order, and none may be left over in the end.
class EventQueueTest : public ::testing::Test {
  protected:
    ~EventQueueTest() override {
        eventQueue_.reset();
        EXPECT_EQ(NumberedBlock::alive, 0);
    }
    void put(int first, int last) {
        for (int i = first; i <= last; ++i)
            eventQueue_->put(makeBlock(i));
    }

    FakeWindow window_;
    std::function<void()> onReceive_;
    std::atomic<int> delivered_ = 0;
    std::unique_ptr<EventQueue> eventQueue_ =
        std::make_unique<EventQueue>(window_, [this](std::unique_ptr<QueuedEvent> block) {
            EXPECT_EQ(static_cast<NumberedBlock&>(*block).number, delivered_);
            if (onReceive_) onReceive_();
            ++delivered_;
        });
};

TEST_F(EventQueueTest, OnlyABlockThatFindsNothingPendingIsPosted) {
    eventQueue_->put(makeBlock(0, private_message::kServerStop));
    put(1, 2);
    const std::vector<FakeWindow::Message> posted = window_.take();
    ASSERT_EQ(posted.size(), 1u);
    EXPECT_EQ(posted[0].message, private_message::kServerStop);
    EXPECT_EQ(posted[0].lParam, 0) << "a stop carries no block";
    onReceive_ = [this] {
        if (delivered_ < 5) put(delivered_ + 3, delivered_ + 3);  // behind what is being delivered
    };
    EXPECT_TRUE(eventQueue_->drain());
    EXPECT_EQ(delivered_, 8);
    EXPECT_FALSE(eventQueue_->isPending());
    EXPECT_TRUE(window_.take().empty());
}

TEST_F(EventQueueTest, ADrainEndsWhenItsTimeIsUp) {
    onReceive_ = [] {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1);
        while (std::chrono::steady_clock::now() < end)
            continue;
    };
    put(0, 99);
    EXPECT_FALSE(eventQueue_->drain());
    EXPECT_LT(delivered_, 50);
    put(100, 100);
    EXPECT_EQ(window_.take().size(), 1u) << "a timer goes on, not another message";
    onReceive_ = nullptr;
    EXPECT_TRUE(eventQueue_->drain());
    EXPECT_EQ(delivered_, 101);
}

TEST_F(EventQueueTest, WhatIsDiscardedInTheMiddleOfADeliveryIsFreed) {
    onReceive_ = [this] {
        put(1, 3);
        eventQueue_->discard();
        EXPECT_EQ(NumberedBlock::alive, 1) << "the one being delivered";
    };
    put(0, 2);
    EXPECT_TRUE(eventQueue_->drain());
    put(1, 3);
    EXPECT_EQ(window_.take().size(), 2u) << "posted again after the discard";
}

// The library's thread puts blocks of every kind, some of which it waits for, while posts are refused now and then.
class EventQueueFromAnotherThread : public EventQueueTest, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(EventQueueFromAnotherThread, KeepsEveryBlockInOrder) {
    constexpr int kBlocks = 202'500;  // the last ones follow the last that is waited for: only a timer brings them
    window_.refuseEvery = GetParam();
    std::thread library([&] {
        for (int i = 0; i < kBlocks; ++i) {
            if (i % 5'000 == 4'999) {
                EXPECT_TRUE(eventQueue_->putAndWait(makeBlock(i, private_message::kNewIntercom)));
                EXPECT_GT(delivered_, i) << "returned before its handler did";
            } else {
                eventQueue_->put(makeBlock(i, private_message::kGroupInformation + static_cast<std::uint32_t>(i % 8)));
            }
        }
    });
    while (delivered_ < kBlocks && window_.waitForMessage()) {
        const std::size_t messages = window_.take().size();
        for (std::size_t i = 0; i <= messages; ++i)  // the timer's comes last
            if (!eventQueue_->drain()) window_.requestTimer();
    }
    library.join();
    EXPECT_EQ(delivered_, kBlocks);
    EXPECT_TRUE(eventQueue_->drain());
    EXPECT_FALSE(eventQueue_->isPending());
}

INSTANTIATE_TEST_SUITE_P(RefusedPosts, EventQueueFromAnotherThread, ::testing::Values(0, 1));

TEST_F(EventQueueTest, ClosingEndsTheWaitAndItsBlockIsStillDelivered) {
    put(0, 0);
    window_.take();
    std::thread library([&] { EXPECT_FALSE(eventQueue_->putAndWait(makeBlock(1, private_message::kNewIntercom))); });
    EXPECT_TRUE(window_.waitForMessage());
    eventQueue_->close();
    library.join();
    EXPECT_FALSE(eventQueue_->putAndWait(makeBlock(2, private_message::kNewIntercom))) << "no waiting once closed";
    EXPECT_TRUE(eventQueue_->drain());
    EXPECT_EQ(delivered_, 3);
}

}  // namespace
}  // namespace orvc
