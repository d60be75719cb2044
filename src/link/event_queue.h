// Passes events from the library's thread to the user-interface thread, in order and without loss.
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

// Purpose: an event posts its private message only if the queue is empty; otherwise it joins the queue, in order.
// Windows holds at most 10,000 posted messages for a window, and a queue of our own is two hundred times as fast.
//
// Threads: put() and putAndWait() belong to the library's thread, one caller at a time. The rest belongs to the
// user-interface thread, unless it says otherwise.
// Guarantees: events are delivered one by one in the order in which they were put, whatever their kind. If a post
// fails, the event stays in the queue and a timer is requested. A private message that another program forges finds no
// event and does nothing. While there is memory, nothing is lost. If the receiver throws for lack of memory, it gets
// the same event again, before all others, until patience() is over; then the event is lost and counted. The destructor
// frees what was not delivered.
class EventQueue {
  public:
    // Takes the event or leaves it.
    using Receiver = std::function<void(std::unique_ptr<QueuedEvent>&&)>;

    // `poster` outlives the event queue. `receive` is called for each event on the user-interface thread.
    EventQueue(WindowPoster& poster, Receiver receive);

    void put(std::unique_ptr<QueuedEvent> event);

    // Puts the event and waits until its handler has returned. Returns false when close() came first; the event is then
    // still delivered or freed like any other.
    bool putAndWait(std::unique_ptr<QueuedEvent> event);

    // Delivers what is pending, for at most kBudget. Called for every private message, and by a timer. Returns true
    // when nothing is left. Otherwise call it again from a timer or when the window is idle, but never post a message
    // for it: posted messages go before input and painting. The message's lParam is not read: its event may have been
    // delivered already, and a forged one is no event.
    bool drain();

    bool isPending() const;
    // Events lost since the last call.
    std::size_t takeLostCount() { return std::exchange(lost_, 0); }

    // How long a lack of memory may last before it costs events; what fails is tried again at least once. Any thread.
    // Only tests change it.
    std::chrono::milliseconds patience() const { return patience_.load(std::memory_order_relaxed); }
    void setPatience(std::chrono::milliseconds patience) { patience_.store(patience, std::memory_order_relaxed); }
    // Waits a moment for the other thread to free memory; false when the link is being closed. The library's thread.
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
    bool deliver(std::unique_ptr<QueuedEvent> event);
    bool keepForLater(std::unique_ptr<QueuedEvent>& event);
    std::unique_ptr<QueuedEvent> takeNext();

    WindowPoster& poster_;
    Receiver receive_;

    mutable std::mutex mutex_;  // guards everything down to waitingFor_
    std::condition_variable delivered_;
    bool pending_ = false;  // a event was put and the last one is not yet delivered
    bool closed_ = false;
    std::unique_ptr<QueuedEvent> posted_;  // rides in a posted message; before everything in queue_
    EventChain queue_;
    const QueuedEvent* waitingFor_ = nullptr;  // the event of a putAndWait() under way

    std::atomic<std::chrono::milliseconds> patience_{std::chrono::milliseconds(1000)};

    // User-interface thread only.
    EventChain local_;  // taken from queue_, not yet delivered
    std::optional<std::chrono::steady_clock::time_point> failingSince_;
    std::size_t lost_ = 0;
};

}  // namespace orvc
