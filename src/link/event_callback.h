// The console's side of the library's event callback: logs what needs no action, copies the rest and hands it over.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "link/event_queue.h"
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
// Lifetime: `eventQueue`, `log` and `clock` outlive it. While it is current(), so does the object itself.
class EventCallback {
  public:
    EventCallback(EventQueue& eventQueue, TrackingLog& log, const Clock& clock, const EventTimers& timers);

    void onEvent(std::uint32_t code, std::int32_t number, const void* connection, const void* data);

    // The server's clock minus this workstation's, in seconds, as of the last event 32.
    std::int32_t serverDelta() const { return serverDelta_; }

    // EventQueue::setPatience().
    void setPatience(std::chrono::milliseconds patience) { eventQueue_.setPatience(patience); }

    // The plain function that the library calls. It reaches the object that was made current last; none = nothing
    // happens. Nothing is thrown out of it: an event for which there is no memory is tried again for a while, and
    // logged as lost then.
    static void KS_CALL receive(std::uint32_t code, std::int32_t number, const void* connection, const void* data);
    static void makeCurrent(EventCallback* callback);

  private:
    // What the library calls with, but for the code.
    struct Arguments {
        std::int32_t number;
        const void* connection;
        const void* data;

        const char* text() const { return data != nullptr ? static_cast<const char*>(data) : ""; }
        std::uintptr_t id() const { return static_cast<std::uint32_t>(number); }
    };
    using Handler = void (EventCallback::*)(const Arguments& event);
    using Handlers = std::array<Handler, event_code::kFirstUnknown>;
    static const Handlers& handlers();

    void ignore(const Arguments&) {}
    void onText(const Arguments& event);
    void onNewConnection(const Arguments& event);
    void onReconnect(const Arguments& event);
    void onConnection(const char* what, const Arguments& event);
    void onIntercomError(const Arguments& event);
    void onAudioHighMark(const Arguments& event);
    void onGpioStateChange(const Arguments& event);
    void onServerStop(const Arguments& event);
    void onUserConnected(const Arguments& event);
    void onUserDisconnected(const Arguments& event);
    void onServerTime(const Arguments& event);
    void onGroupInformation(const Arguments& event);
    void onInitializationComplete(const Arguments& event);
    void onSettingsUpdate(const Arguments& event);
    void onVariable(const Arguments& event);
    void onFileData(const Arguments& event);
    template <typename Record, std::uint32_t message>
    void queueRecord(const Arguments& event);

    EventQueue& eventQueue_;
    TrackingLog& log_;
    const Clock& clock_;
    EventTimers timers_;
    std::atomic<std::int32_t> serverDelta_{0};
    std::unique_ptr<StopEvent> spareStop_ = std::make_unique<StopEvent>();  // a stop needs no memory
    bool isLosing_ = false;  // the last event was lost; the library's thread only

    static std::atomic<EventCallback*> current_;
};

}  // namespace orvc
