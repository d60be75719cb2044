#include "link/event_callback.h"

#include <chrono>
#include <exception>
#include <new>
#include <optional>

#include "link/queued_events.h"

namespace orvc {

namespace {

using SteadyClock = std::chrono::steady_clock;

}  // namespace

std::atomic<EventCallback*> EventCallback::current_{nullptr};

EventCallback::EventCallback(EventQueue& eventQueue, TrackingLog& log, const Clock& clock, const EventTimers& timers)
    : eventQueue_(eventQueue), log_(log), clock_(clock), timers_(timers) {}

void EventCallback::makeCurrent(EventCallback* callback) {
    current_ = callback;
}

void KS_CALL EventCallback::receive(std::uint32_t code, std::int32_t number, const void* connection, const void* data) {
    EventCallback* const callback = current_;
    if (callback == nullptr) return;
    std::optional<SteadyClock::time_point> failingSince;
    for (;;) {
        try {
            callback->onEvent(code, number, connection, data);
            callback->isLosing_ = false;
            return;
        } catch (const std::exception& error) {
            // The window may free memory. After a lost event, retry the next one only once.
            const auto now = SteadyClock::now();
            const bool again =
                !failingSince || (!callback->isLosing_ && now - *failingSince < callback->eventQueue_.patience());
            failingSince = failingSince.value_or(now);
            if (again && callback->eventQueue_.waitForRoom()) continue;
            callback->isLosing_ = true;
            callback->log_.log("receive: Event %u lost: %s", code, error.what());
            return;
        }
    }
}

// What is done with each code below kFirstUnknown; null = it is logged as not serviced.
const EventCallback::Handlers& EventCallback::handlers() {
    static constexpr Handlers table = [] {
        Handlers handlers{};
        // Known, and of no interest to this console.
        for (const std::uint32_t code : {2, 4, 6, 7, 8, 10, 12, 13, 14, 16, 17, 20, 21, 22, 23, 24, 40, 41, 50, 82})
            handlers[code] = &EventCallback::ignore;
        handlers[event_code::kText] = &EventCallback::onText;
        handlers[event_code::kNewConnection] = &EventCallback::onNewConnection;
        handlers[event_code::kIntercomError] = &EventCallback::onIntercomError;
        handlers[event_code::kAudioHighMark] = &EventCallback::onAudioHighMark;
        handlers[event_code::kReconnect] = &EventCallback::onReconnect;
        handlers[event_code::kGpioStateChange] = &EventCallback::onGpioStateChange;
        handlers[event_code::kServerStop] = &EventCallback::onServerStop;
        handlers[event_code::kUserConnected] = &EventCallback::onUserConnected;
        handlers[event_code::kUserDisconnected] = &EventCallback::onUserDisconnected;
        handlers[event_code::kServerTime] = &EventCallback::onServerTime;
        handlers[event_code::kNewQueueMembership] =
            &EventCallback::queueRecord<KSQueueRecord, private_message::kNewQueueMembership>;
        handlers[event_code::kQueueMembershipUpdate] =
            &EventCallback::queueRecord<KSQueueRecord, private_message::kQueueMembershipUpdate>;
        handlers[event_code::kGroupInformation] = &EventCallback::onGroupInformation;
        handlers[event_code::kGroupMember] = &EventCallback::queueRecord<KSMac, private_message::kGroupMember>;
        handlers[event_code::kServerGroup] =
            &EventCallback::queueRecord<KSServerGroupRecord, private_message::kServerGroup>;
        handlers[event_code::kGroupMessage] =
            &EventCallback::queueRecord<KSMessageRecord, private_message::kGroupMessage>;
        handlers[event_code::kInitializationComplete] = &EventCallback::onInitializationComplete;
        handlers[event_code::kSettingsUpdate] = &EventCallback::onSettingsUpdate;
        handlers[event_code::kVariable] = &EventCallback::onVariable;
        handlers[event_code::kFileData] = &EventCallback::onFileData;
        return handlers;
    }();
    return table;
}

void EventCallback::onEvent(std::uint32_t code, std::int32_t number, const void* connection, const void* data) {
    const Handler handler = code < event_code::kFirstUnknown ? handlers()[code] : nullptr;
    if (handler != nullptr)
        (this->*handler)({number, connection, data});
    else
        log_.log("Unserviced Event %d called back", static_cast<int>(code));
}

void EventCallback::onText(const Arguments& event) {
    log_.log("%s", event.text());
}

void EventCallback::onNewConnection(const Arguments& event) {
    onConnection("New Connection", event);
}

void EventCallback::onReconnect(const Arguments& event) {
    onConnection("Reconnect", event);
}

void EventCallback::onIntercomError(const Arguments& event) {
    log_.log("Intercom %d Event Error", event.number);
}

void EventCallback::onAudioHighMark(const Arguments& event) {
    log_.log("Intercom %d Event Audio High Mark", event.number);
}

void EventCallback::onGpioStateChange(const Arguments&) {
    log_.log("Event GPIO State Change");
}

void EventCallback::onServerStop(const Arguments&) {
    if (spareStop_ == nullptr) spareStop_ = std::make_unique<StopEvent>();
    eventQueue_.put(std::move(spareStop_));
    spareStop_.reset(new (std::nothrow) StopEvent);
}

void EventCallback::onUserConnected(const Arguments& event) {
    log_.log("Console user %s connected", event.text());
}

void EventCallback::onUserDisconnected(const Arguments& event) {
    log_.log("Console user %s disconnected", event.text());
}

void EventCallback::onGroupInformation(const Arguments& event) {
    if (event.data == nullptr) return;
    auto queued = std::make_unique<GroupEvent>(private_message::kGroupInformation, event.id(),
                                               *static_cast<const KSGroupRecord*>(event.data));
    queued->record.groupId = static_cast<std::uint32_t>(event.number);
    eventQueue_.put(std::move(queued));
}

void EventCallback::onInitializationComplete(const Arguments&) {
    eventQueue_.put(std::make_unique<TimerEvent>(timers_.subscriptionStart, timers_.subscriptionStartPeriod));
    log_.log("Console initialization is complete");
}

void EventCallback::onSettingsUpdate(const Arguments&) {
    eventQueue_.put(std::make_unique<TimerEvent>(timers_.settingsReload, timers_.settingsReloadPeriod));
    log_.log("Console settings update is available");
}

void EventCallback::onVariable(const Arguments& event) {
    if (event.data == nullptr) return;
    eventQueue_.put(VariableEvent::make(*static_cast<const KSVariableNotification*>(event.data)));
}

template <typename Record, std::uint32_t message>
void EventCallback::queueRecord(const Arguments& event) {
    if (event.data == nullptr) return;
    // Only a group's member needs to know the number: its group.
    const std::uintptr_t wParam = message == private_message::kGroupMember ? event.id() : 0;
    eventQueue_.put(std::make_unique<RecordEvent<Record>>(message, wParam, *static_cast<const Record*>(event.data)));
}

void EventCallback::onConnection(const char* what, const Arguments& event) {
    if (event.connection == nullptr) return;
    const std::int32_t socket = event.number;
    const auto& info = *static_cast<const KSConnectionInfo*>(event.connection);
    const std::string_view name = fieldText(info.deviceName);
    log_.log("EVENT:%s '%.*s' on socket %d Status = 0x%x", what, static_cast<int>(name.size()), name.data(), socket,
             info.status);
    auto queued = std::make_unique<ConnectionEvent>(socket, info);
    const auto* words = static_cast<const KSWord*>(event.data);
    if (words != nullptr && static_cast<std::intptr_t>(words[0]) >= 1 && words[1] != 0)
        queued->extra = *reinterpret_cast<const KSExtraIntercomInfo*>(words[1]);
    if (socket < 0) log_.log("EVENT_NEW_CONNECTION: Socket %d should not be negative", socket);
    eventQueue_.putAndWait(std::move(queued));
}

void EventCallback::onServerTime(const Arguments& event) {
    if (event.data == nullptr) return;
    const std::uint32_t serverTime = *static_cast<const std::uint32_t*>(event.data);
    serverDelta_ = static_cast<std::int32_t>(serverTime - static_cast<std::uint32_t>(clock_.now()));
    log_.log("Server Delta = %d", serverDelta_.load());
}

void EventCallback::onFileData(const Arguments& event) {
    if (event.data == nullptr) return;
    const auto& file = *static_cast<const KSFileData*>(event.data);
    std::string bytes;
    if (file.bytes != nullptr) bytes.assign(static_cast<const char*>(file.bytes), file.byteCount);
    if (file.bytes == nullptr && file.byteCount > 0) return;
    eventQueue_.put(std::make_unique<FileDataEvent>(file.file, std::move(bytes)));
}

}  // namespace orvc
