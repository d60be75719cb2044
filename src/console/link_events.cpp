#include "console/link_events.h"

#include <algorithm>
#include <utility>

#include "ui/message_loop.h"

namespace orvc {
namespace {

// While events pour in, the list is refreshed at most this often, in milliseconds, and takes at most a tenth of the
// time.
constexpr std::uint32_t kRefreshPeriod = 100;
constexpr std::uint32_t kRefreshShare = 10;
// Milliseconds between two attempts to start a timer that Windows refused.
constexpr DWORD kRetryPause = 20;

}  // namespace

LinkEvents::LinkEvents(const Clock& clock, std::function<bool()> isShown, std::function<void()> show,
                       std::function<bool()> prepare)
    : clock_(clock),
      isShown_(std::move(isShown)),
      show_(std::move(show)),
      prepare_(std::move(prepare)),
      poster_(timer::kEventQueue, timer::kEventQueuePeriod) {}

LinkEvents::~LinkEvents() {
    ui::setIdleWork(nullptr);
}

void LinkEvents::attach(HWND window, Session& session) {
    window_ = window;
    session_ = &session;
    poster_.setWindow(window);
    ui::setIdleWork([this] { return deliverWhenIdle(); });
}

void LinkEvents::startTimer(std::uintptr_t timerId, std::uint32_t milliseconds) {
    refusedTimers_.note(timerId, milliseconds, SetTimer(window_, timerId, milliseconds, nullptr) != 0);
}

void LinkEvents::stopTimer(std::uintptr_t timerId) {
    refusedTimers_.forget(timerId);
    KillTimer(window_, timerId);
}

void LinkEvents::onTimer(std::uintptr_t timerId) {
    retryRefusedTimers();
    if (timerId == timer::kEventQueue || session_->hasUndeliveredEvents()) deliver();
    if (timerId != timer::kEventQueue) session_->onTimer(timerId);
    showChanges(false);
}

void LinkEvents::deliver() {
    const bool done = session_->deliverEvents();
    if (done)
        stopTimer(timer::kEventQueue);
    else
        startTimer(timer::kEventQueue, timer::kEventQueuePeriod);
    showChanges(done);
}

bool LinkEvents::deliverWhenIdle() {
    const bool someRefused = retryRefusedTimers();
    if (session_->hasUndeliveredEvents()) deliver();
    const bool moreToWrite = session_->continueChanges();
    if (session_->hasUndeliveredEvents() || moreToWrite || prepare_()) return true;
    // Keep polling: until a refused timer starts, no message may wake the loop.
    if (someRefused) Sleep(kRetryPause);
    return someRefused;
}

bool LinkEvents::retryRefusedTimers() {
    return refusedTimers_.retry([this](std::uintptr_t timerId, std::uint32_t milliseconds) {
        return SetTimer(window_, timerId, milliseconds, nullptr) != 0;
    });
}

void LinkEvents::showChanges(bool isLast) {
    if (isShown_()) return;
    const std::uint32_t start = clock_.tickCount();
    if (!isLast && start - lastRefresh_ < refreshPause_) return;
    show_();
    lastRefresh_ = clock_.tickCount();
    refreshPause_ = std::max(kRefreshPeriod, (lastRefresh_ - start) * kRefreshShare);
}

void LinkEvents::pause(std::uint32_t milliseconds) {
    const std::uint32_t start = clock_.tickCount();
    for (std::uint32_t passed = 0; passed < milliseconds; passed = clock_.tickCount() - start) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - passed, QS_PAINT | QS_POSTMESSAGE | QS_SENDMESSAGE);
        MSG message;
        while (PeekMessageA(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE) ||
               PeekMessageA(&message, window_, private_message::kNewIntercom, private_message::kStartTimer, PM_REMOVE))
            DispatchMessageA(&message);
        if (session_->hasUndeliveredEvents()) deliver();
    }
}

}  // namespace orvc
