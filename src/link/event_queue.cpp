#include "link/event_queue.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "link/event_memory.h"

namespace orvc {
namespace {

using SteadyClock = std::chrono::steady_clock;

// Events delivered between two looks at the clock: a few microseconds' work.
constexpr int kEventsPerLook = 16;

std::intptr_t addressOf(const QueuedEvent& event) {
    // A server stop carries no event in its message.
    return event.message() == private_message::kServerStop ? 0 : reinterpret_cast<std::intptr_t>(&event);
}

}  // namespace

EventQueue::EventQueue(WindowPoster& poster, Receiver receive) : poster_(poster), receive_(std::move(receive)) {}

void EventQueue::put(std::unique_ptr<QueuedEvent> event) {
    const std::uint32_t message = event->message();
    const std::uintptr_t wParam = event->wParam();
    const std::intptr_t lParam = addressOf(*event);
    {
        const std::lock_guard lock(mutex_);
        if (pending_) {
            queue_.append(std::move(event));
            return;
        }
        pending_ = true;
        posted_ = std::move(event);
    }
    // Not under the lock: the window may already be draining, and takes the event before its message comes.
    if (!poster_.post(message, wParam, lParam)) poster_.requestTimer();
}

bool EventQueue::putAndWait(std::unique_ptr<QueuedEvent> event) {
    const QueuedEvent* const mine = event.get();
    const std::uint32_t message = event->message();
    const std::uintptr_t wParam = event->wParam();
    const std::intptr_t lParam = addressOf(*event);
    std::unique_lock lock(mutex_);
    if (closed_) {
        lock.unlock();
        put(std::move(event));
        return false;
    }
    pending_ = true;
    queue_.append(std::move(event));
    waitingFor_ = mine;
    while (waitingFor_ == mine && !closed_) {
        lock.unlock();
        const bool handled = poster_.send(message, wParam, lParam);
        lock.lock();
        // The handler may have run out of its budget before it came to this event; a timer brings it there.
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
        std::unique_ptr<QueuedEvent> event = takeNext();
        if (event == nullptr) return true;
        if (!deliver(std::move(event))) return false;
        if (count % kEventsPerLook == kEventsPerLook - 1 && SteadyClock::now() >= end) return !isPending();
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

// Returns false when the event was kept for later.
bool EventQueue::deliver(std::unique_ptr<QueuedEvent> event) {
    const QueuedEvent* const delivered = event.get();
    const bool mayBeAwaited = event->message() == private_message::kNewIntercom;
    try {
        receive_(std::move(event));
        failingSince_.reset();
    } catch (const std::exception&) {
        if (keepForLater(event)) return false;
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

// While a shortage lasts, only the event that met it first is waited for.
bool EventQueue::keepForLater(std::unique_ptr<QueuedEvent>& event) {
    const auto now = SteadyClock::now();
    const bool isFirst = !failingSince_;
    if (isFirst) failingSince_ = now;
    if (event == nullptr || (!isFirst && now - *failingSince_ >= patience())) return false;
    local_.prepend(std::move(event));
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
