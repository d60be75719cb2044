// The console's side of the library's event callback: logs what needs no action, copies the rest and hands it over.
#pragma once

#include <atomic>
#include <cstdint>

#include "link/hand_over.h"
#include "link/ks_types.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// The timers that the callback asks the user-interface thread to start.
struct EventTimers {
    std::uintptr_t subscriptionStart;  // after event 100
    std::uint32_t subscriptionStartPeriod;
    std::uintptr_t settingsReload;  // after event 101
    std::uint32_t settingsReloadPeriod;
};

// Purpose: one call of onEvent() for each event of the library.
// Thread: onEvent() runs on the library's thread and keeps nothing of what it is given. It blocks only for events 1 and
// 9. The accessors may be called from any thread.
// Lifetime: `handOver`, `log` and `clock` outlive it. While it is current(), so does the object itself.
class EventCallback {
  public:
    EventCallback(HandOver& handOver, TrackingLog& log, const Clock& clock, const EventTimers& timers);

    void onEvent(std::uint32_t code, std::int32_t number, const void* connection, const void* data);

    // The server's clock minus this workstation's, in seconds, as the last event 32 told it.
    std::int32_t serverDelta() const { return serverDelta_; }

    // HandOver::setPatience().
    void setPatience(std::chrono::milliseconds patience) { handOver_.setPatience(patience); }

    // True from event 101 until the reload takes it.
    bool takeSettingsUpdate() { return settingsUpdate_.exchange(false); }

    // The plain function that the library calls. It reaches the object that was made current last; none = nothing
    // happens. Nothing is thrown out of it: an event for which there is no memory is tried again for a while, and
    // logged as lost then.
    static void KS_CALL receive(std::uint32_t code, std::int32_t number, const void* connection, const void* data);
    static void makeCurrent(EventCallback* callback);

  private:
    void onConnection(const char* what, std::int32_t socket, const void* connection, const void* data);
    void onServerTime(const void* data);
    void onFileData(const void* data);
    template <typename Record>
    void handOverRecord(std::uint32_t message, std::uintptr_t wParam, const void* data);

    HandOver& handOver_;
    TrackingLog& log_;
    const Clock& clock_;
    EventTimers timers_;
    std::atomic<std::int32_t> serverDelta_{0};
    std::atomic<bool> settingsUpdate_{false};
    std::unique_ptr<StopBlock> spareStop_ = std::make_unique<StopBlock>();  // a stop needs no memory
    bool isLosing_ = false;  // the last event was lost; the library's thread only

    static std::atomic<EventCallback*> current_;
};

}  // namespace orvc
