#include "link/event_callback.h"

#include <chrono>
#include <exception>
#include <new>
#include <optional>

#include "link/event_blocks.h"

namespace orvc {

namespace {

using SteadyClock = std::chrono::steady_clock;

}  // namespace

std::atomic<EventCallback*> EventCallback::current_{nullptr};

EventCallback::EventCallback(HandOver& handOver, TrackingLog& log, const Clock& clock, const EventTimers& timers)
    : handOver_(handOver), log_(log), clock_(clock), timers_(timers) {}

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
            // The window may make room by handling what waits. After a loss the next one is not waited for so long.
            const auto now = SteadyClock::now();
            const bool again =
                !failingSince || (!callback->isLosing_ && now - *failingSince < callback->handOver_.patience());
            failingSince = failingSince.value_or(now);
            if (again && callback->handOver_.waitForRoom()) continue;
            callback->isLosing_ = true;
            callback->log_.log("Event %u lost: %s", code, error.what());
            return;
        }
    }
}

void EventCallback::onEvent(std::uint32_t code, std::int32_t number, const void* connection, const void* data) {
    namespace message = private_message;
    const auto text = [data] { return data != nullptr ? static_cast<const char*>(data) : ""; };
    const auto id = static_cast<std::uintptr_t>(static_cast<std::uint32_t>(number));
    switch (code) {
        case event_code::kText:
            log_.log("%s", text());
            return;
        case event_code::kNewConnection:
            onConnection("New Connection", number, connection, data);
            return;
        case event_code::kIntercomError:
            log_.log("Intercom %d Event Error", number);
            return;
        case event_code::kAudioHighMark:
            log_.log("Intercom %d Event Audio High Mark", number);
            return;
        case event_code::kReconnect:
            onConnection("Reconnect", number, connection, data);
            return;
        case event_code::kGpioStateChange:
            log_.log("Event GPIO State Change");
            return;
        case event_code::kServerStop:
            if (spareStop_ == nullptr) spareStop_ = std::make_unique<StopBlock>();
            handOver_.put(std::move(spareStop_));
            spareStop_.reset(new (std::nothrow) StopBlock);
            return;
        case event_code::kUserConnected:
            log_.log("Console user %s connected", text());
            return;
        case event_code::kUserDisconnected:
            log_.log("Console user %s disconnected", text());
            return;
        case event_code::kServerTime:
            onServerTime(data);
            return;
        case event_code::kNewQueueMembership:
            handOverRecord<KSQueueRecord>(message::kNewQueueMembership, 0, data);
            return;
        case event_code::kQueueMembershipUpdate:
            handOverRecord<KSQueueRecord>(message::kQueueMembershipUpdate, 0, data);
            return;
        case event_code::kGroupInformation:
            if (data != nullptr) {
                auto block = std::make_unique<GroupBlock>(message::kGroupInformation, id,
                                                          *static_cast<const KSGroupRecord*>(data));
                block->record.groupId = static_cast<std::uint32_t>(number);
                handOver_.put(std::move(block));
            }
            return;
        case event_code::kGroupMember:
            handOverRecord<KSMac>(message::kGroupMember, id, data);
            return;
        case event_code::kServerGroup:
            handOverRecord<KSServerGroupRecord>(message::kServerGroup, 0, data);
            return;
        case event_code::kGroupMessage:
            handOverRecord<KSMessageRecord>(message::kGroupMessage, 0, data);
            return;
        case event_code::kInitializationComplete:
            handOver_.put(std::make_unique<TimerBlock>(timers_.subscriptionStart, timers_.subscriptionStartPeriod));
            log_.log("Console initialization is complete");
            return;
        case event_code::kSettingsUpdate:
            settingsUpdate_ = true;
            handOver_.put(std::make_unique<TimerBlock>(timers_.settingsReload, timers_.settingsReloadPeriod));
            log_.log("Console settings update is available");
            return;
        case event_code::kVariable:
            if (data != nullptr) handOver_.put(VariableBlock::make(*static_cast<const KSVariableNotification*>(data)));
            return;
        case event_code::kFileData:
            onFileData(data);
            return;
        case 2:
        case 4:
        case 6:
        case 7:
        case 8:
        case 10:
        case 12:
        case 13:
        case 14:
        case 16:
        case 17:
        case 20:
        case 21:
        case 22:
        case 23:
        case 24:
        case 40:
        case 41:
        case 50:
        case 82:
            return;  // known, and of no interest to this console
        default:
            log_.log("Unserviced Event %d called back", static_cast<int>(code));
    }
}

template <typename Record>
void EventCallback::handOverRecord(std::uint32_t message, std::uintptr_t wParam, const void* data) {
    if (data == nullptr) return;
    handOver_.put(std::make_unique<RecordBlock<Record>>(message, wParam, *static_cast<const Record*>(data)));
}

void EventCallback::onConnection(const char* what, std::int32_t socket, const void* connection, const void* data) {
    if (connection == nullptr) return;
    const auto& info = *static_cast<const KSConnectionInfo*>(connection);
    const std::string_view name = fieldText(info.deviceName);
    log_.log("EVENT:%s '%.*s' on socket %d Status = 0x%x", what, static_cast<int>(name.size()), name.data(), socket,
             info.status);
    auto block = std::make_unique<ConnectionBlock>(socket, info);
    const auto* words = static_cast<const KSWord*>(data);
    if (words != nullptr && static_cast<std::intptr_t>(words[0]) >= 1 && words[1] != 0)
        block->extra = *reinterpret_cast<const KSExtraIntercomInfo*>(words[1]);
    if (socket < 0) log_.log("EVENT_NEW_CONNECTION: Socket %d should not be negative", socket);
    handOver_.putAndWait(std::move(block));
}

void EventCallback::onServerTime(const void* data) {
    if (data == nullptr) return;
    const std::uint32_t serverTime = *static_cast<const std::uint32_t*>(data);
    serverDelta_ = static_cast<std::int32_t>(serverTime - static_cast<std::uint32_t>(clock_.now()));
    log_.log("Server Delta = %d", serverDelta_.load());
}

void EventCallback::onFileData(const void* data) {
    if (data == nullptr) return;
    const auto& file = *static_cast<const KSFileData*>(data);
    std::string bytes;
    if (file.bytes != nullptr) bytes.assign(static_cast<const char*>(file.bytes), file.byteCount);
    if (file.bytes == nullptr && file.byteCount > 0) return;
    handOver_.put(std::make_unique<FileDataBlock>(file.file, std::move(bytes)));
}

}  // namespace orvc
