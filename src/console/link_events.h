// How the library's events, and timers that Windows refused, get their turn in the main window.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>

#include "session/refused_timers.h"
#include "session/session.h"
#include "win32/window_poster.h"

namespace orvc {

// Purpose: delivers events within a budget, and sees to it that what is left is delivered soon. The list is shown once
// for many events. Thread: user-interface thread, but for the poster. Lifetime: what the constructor takes outlives it.
class LinkEvents {
  public:
    // `isShown` says whether the list shows what has come; `show` makes it so. `prepare` does a little that can wait
    // for idle moments, and returns whether there is more.
    LinkEvents(const Clock& clock, std::function<bool()> isShown, std::function<void()> show,
               std::function<bool()> prepare);
    ~LinkEvents();
    LinkEvents(const LinkEvents&) = delete;
    LinkEvents& operator=(const LinkEvents&) = delete;

    win32::MainWindowPoster& poster() { return poster_; }

    // The main window is there, with its session. Begins to use the loop's idle moments.
    void attach(HWND window, Session& session);

    void startTimer(std::uintptr_t timer, std::uint32_t milliseconds);
    void stopTimer(std::uintptr_t timer);
    // One tick of any timer: undelivered events come first, since after a refused post nothing else would deliver them.
    void onTimer(std::uintptr_t timer);

    // The handler of every private message that carries an event.
    void deliver();

    // Waits while the window paints and events are delivered; no input, no timers.
    void pause(std::uint32_t milliseconds);

  private:
    bool deliverWhenIdle();
    bool retryRefusedTimers();
    void showChanges(bool isLast);

    const Clock& clock_;
    std::function<bool()> isShown_;
    std::function<void()> show_;
    std::function<bool()> prepare_;
    win32::MainWindowPoster poster_;
    HWND window_ = nullptr;
    Session* session_ = nullptr;
    RefusedTimers refusedTimers_;
    std::uint32_t lastRefresh_ = 0;   // tick count
    std::uint32_t refreshPause_ = 0;  // milliseconds until the next one while events pour in
};

}  // namespace orvc
