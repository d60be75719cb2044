#include "link/event_queue.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "link/event_memory.h"

namespace orvc {
namespace {

using SteadyClock = std::chrono::steady_clock;

// Blocks delivered between two looks at the clock: a few microseconds' work.
constexpr int kBlocksPerLook = 16;

std::intptr_t addressOf(const QueuedEvent& block) {
    // A server stop carries no block in its message.
    return block.message() == private_message::kServerStop ? 0 : reinterpret_cast<std::intptr_t>(&block);
}

}  // namespace

EventQueue::EventQueue(WindowPoster& poster, Receiver receive) : poster_(poster), receive_(std::move(receive)) {}

void EventQueue::put(std::unique_ptr<QueuedEvent> block) {
    const std::uint32_t message = block->message();
    const std::uintptr_t wParam = block->wParam();
    const std::intptr_t lParam = addressOf(*block);
    {
        const std::lock_guard lock(mutex_);
        if (pending_) {
            queue_.append(std::move(block));
            return;
        }
        pending_ = true;
        posted_ = std::move(block);
    }
    // Not under the lock: the window may already be draining, and takes the block before its message comes.
    if (!poster_.post(message, wParam, lParam)) poster_.requestTimer();
}

bool EventQueue::putAndWait(std::unique_ptr<QueuedEvent> block) {
    const QueuedEvent* const mine = block.get();
    const std::uint32_t message = block->message();
    const std::uintptr_t wParam = block->wParam();
    const std::intptr_t lParam = addressOf(*block);
    std::unique_lock lock(mutex_);
    if (closed_) {
        lock.unlock();
        put(std::move(block));
        return false;
    }
    pending_ = true;
    queue_.append(std::move(block));
    waitingFor_ = mine;
    while (waitingFor_ == mine && !closed_) {
        lock.unlock();
        const bool handled = poster_.send(message, wParam, lParam);
        lock.lock();
        // The handler may have run out of its budget before it came to this block; a timer brings it there.
        const auto pause = std::chrono::milliseconds(handled ? 100 : 10);
        delivered_.wait_for(lock, pause, [&] { return waitingFor_ != mine || closed_; });
    }
    const bool delivered = waitingFor_ != mine;
    waitingFor_ = nullptr;
    return delivered;
}

bool EventQueue::drain() {
    const auto end = SteadyClock::now() + std::chrono::milliseconds(kBudget);
    for (int count = 0;; ++count) {
        std::unique_ptr<QueuedEvent> block = takeNext();
        if (block == nullptr) return true;
        if (!deliver(std::move(block))) return false;
        if (count % kBlocksPerLook == kBlocksPerLook - 1 && SteadyClock::now() >= end) return !isPending();
    }
}

std::unique_ptr<QueuedEvent> EventQueue::takeNext() {
    if (!local_.isEmpty()) return local_.takeFirst();
    const std::lock_guard lock(mutex_);
    if (posted_ != nullptr) return std::move(posted_);
    local_.swap(queue_);
    if (local_.isEmpty()) {
        pending_ = false;
        return nullptr;
    }
    return local_.takeFirst();
}

// Returns false when the block was kept for later.
bool EventQueue::deliver(std::unique_ptr<QueuedEvent> block) {
    const QueuedEvent* const delivered = block.get();
    const bool mayBeAwaited = block->message() == private_message::kNewIntercom;
    try {
        receive_(std::move(block));
        failingSince_.reset();
    } catch (const std::exception&) {
        if (keepForLater(block)) return false;
        ++lost_;
    }
    if (!mayBeAwaited) return true;
    const std::lock_guard lock(mutex_);
    if (waitingFor_ == delivered) {
        waitingFor_ = nullptr;
        delivered_.notify_all();
    }
    return true;
}

// While a shortage lasts, only the block that met it first is waited for.
bool EventQueue::keepForLater(std::unique_ptr<QueuedEvent>& block) {
    const auto now = SteadyClock::now();
    const bool isFirst = !failingSince_;
    if (isFirst) failingSince_ = now;
    if (block == nullptr || (!isFirst && now - *failingSince_ >= patience())) return false;
    local_.prepend(std::move(block));
    return true;
}

bool EventQueue::waitForRoom() {
    constexpr auto kPause = std::chrono::milliseconds(10);
    std::unique_lock lock(mutex_);
    return !delivered_.wait_for(lock, std::min(kPause, patience()), [this] { return closed_; });
}

bool EventQueue::isPending() const {
    const std::lock_guard lock(mutex_);
    return pending_;
}

void EventQueue::setClosed(bool closed) {
    const std::lock_guard lock(mutex_);
    closed_ = closed;
    if (closed) delivered_.notify_all();
}

void EventQueue::discard() {
    EventChain dropped;
    std::unique_ptr<QueuedEvent> first;
    {
        const std::lock_guard lock(mutex_);
        dropped.swap(queue_);
        first = std::move(posted_);
        pending_ = false;
    }
    local_.clear();
    event_memory::finishPiece();
}

}  // namespace orvc
