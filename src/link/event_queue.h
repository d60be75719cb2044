// Carries event blocks from the library's thread to the user-interface thread, in order and without loss.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "link/queued_events.h"

namespace orvc {

// How the event queue reaches the main window. Called on the library's thread; tests replace it.
class WindowPoster {
  public:
    virtual ~WindowPoster() = default;
    // Posts a message; false when the system refuses (its queue is full, the window is gone).
    virtual bool post(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) = 0;
    // Sends a message and waits for its handler at most a tenth of a second; false when it was not handled by then.
    virtual bool send(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) = 0;
    // Asks for a timer that calls EventQueue::drain() soon.
    virtual void requestTimer() = 0;
};

// Purpose: an event posts its private message with its block while nothing is pending; while something is, further
// blocks queue up behind it. Windows holds at most 10,000 posted messages for a window, and a queue of our own is two
// hundred times as fast.
//
// Threads: put() and putAndWait() belong to the library's thread (one caller at a time); close() to any thread; the
// rest to the user-interface thread. Guarantees: blocks are delivered one by one in the order in which they were put,
// whatever their kind and whichever way woke the window. Nothing is lost: a refused post leaves its block in the queue
// and asks for a timer. A private message that another program forges finds no block and does nothing. The destructor
// frees what was not delivered. A receiver that throws, for want of memory, gets the block that it left again, before
// all others, until patience() is over; the block is lost then, and counted.
class EventQueue {
  public:
    // Takes the block or leaves it.
    using Receiver = std::function<void(std::unique_ptr<QueuedEvent>&&)>;

    // `poster` outlives the event queue. `receive` is called for each block on the user-interface thread.
    EventQueue(WindowPoster& poster, Receiver receive);

    void put(std::unique_ptr<QueuedEvent> block);

    // Puts the block and waits until its handler has returned. Returns false when close() came first; the block is then
    // still delivered or freed like any other.
    bool putAndWait(std::unique_ptr<QueuedEvent> block);

    // The handler of every private message, and of the timer that goes on where it stopped: delivers what is pending
    // for at most kBudget. Returns true when nothing is left; otherwise the caller sees to it that it is called again,
    // from a timer or when the window is idle, never by a message posted to itself. The message's lParam is not read:
    // a timer may have delivered its block already, and a forged one is no block.
    bool drain();

    bool isPending() const;
    // Blocks lost since the last call.
    std::size_t takeLostCount() { return std::exchange(lost_, 0); }

    // How long a shortage of memory may last before it costs events; what fails is tried again once at least. Any
    // thread; changed by tests only.
    std::chrono::milliseconds patience() const { return patience_.load(std::memory_order_relaxed); }
    void setPatience(std::chrono::milliseconds patience) { patience_.store(patience, std::memory_order_relaxed); }
    // Waits a moment for the other thread to make room; false when close() has ended all waiting. The library's thread.
    bool waitForRoom();

    // While one lives, nobody waits for the window: a putAndWait() under way and every later one return at once. For a
    // call into the library that may itself wait for the library's thread. User-interface thread; they do not nest.
    class NoWaiting {
      public:
        explicit NoWaiting(EventQueue& queue) : queue_(queue) { queue_.setClosed(true); }
        ~NoWaiting() { queue_.setClosed(false); }
        NoWaiting(const NoWaiting&) = delete;
        NoWaiting& operator=(const NoWaiting&) = delete;

      private:
        EventQueue& queue_;
    };
    // The same for good: the link is being closed.
    void close() { setClosed(true); }
    // Frees everything undelivered.
    void discard();

    // How long one drain may keep the window from its other work, in milliseconds.
    static constexpr int kBudget = 5;

  private:
    void setClosed(bool closed);
    bool deliver(std::unique_ptr<QueuedEvent> block);
    bool keepForLater(std::unique_ptr<QueuedEvent>& block);
    std::unique_ptr<QueuedEvent> takeNext();

    WindowPoster& poster_;
    Receiver receive_;

    mutable std::mutex mutex_;  // guards everything down to waitingFor_
    std::condition_variable delivered_;
    bool pending_ = false;  // a block was put and the last one is not yet delivered
    bool closed_ = false;
    std::unique_ptr<QueuedEvent> posted_;  // rides in a posted message; before everything in queue_
    EventChain queue_;
    const QueuedEvent* waitingFor_ = nullptr;  // the block of a putAndWait() under way

    std::atomic<std::chrono::milliseconds> patience_{std::chrono::milliseconds(1000)};

    // User-interface thread only.
    EventChain local_;  // taken from queue_, not yet delivered
    std::optional<std::chrono::steady_clock::time_point> failingSince_;
    std::size_t lost_ = 0;
};

}  // namespace orvc
