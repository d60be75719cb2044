// A console without a window around a Session, and a server with a small installation: whatever fails in it is caught
// where the real one's window procedure catches it.
#pragma once

#include <bitset>
#include <string>

#include "counted_new.h"
#include "fake_clock.h"
#include "session/refused_timers.h"
#include "session/session.h"
#include "shown_events.h"
#include "silent_server_link.h"

namespace orvc {

class FaultConsole final : public SessionHost, public SilentServerLink, public WindowPoster {
  public:
    // What is given lives longer.
    FaultConsole(LogSystem& system, FaultPlan& posts, FaultPlan& timers)
        : posts_(posts), timers_(timers), log(system, clock_) {
        log.setSupportFolder("a folder");
        log.setRecordEvents(1);
        session_.setConsoleMode(true);
        session_.callback().setPatience(std::chrono::milliseconds(0));
        EventCallback::makeCurrent(&session_.callback());
        log.OpenCloseDebugFile(false, true);
        startTimer(timer::kLogon, timer::kLogonPeriod);
    }
    ~FaultConsole() override { EventCallback::makeCurrent(nullptr); }

    // Timers and messages, until the console has settled.
    void run() {
        for (int i = 0; i < 40; ++i) {
            refused_.retry([this](std::uintptr_t timer, std::uint32_t) { return startIfAllowed(timer); });
            if (posted_ || running_[timer::kEventQueue] || session_.hasUndeliveredEvents()) deliver();
            for (std::uintptr_t timer = timer::kLogon; timer <= timer::kLast; ++timer)
                if (timer != timer::kEventQueue && running_[timer]) guarded([&] { session_.onTimer(timer); });
            clock_.seconds += i % 10 == 9 ? 1 : 0;
        }
    }
    void stopServer() { tell(event_code::kServerStop, 0, nullptr); }
    // The server names everything anew and says so.
    void announceReload() {
        name_ = "the name since the reload";
        tell(event_code::kSettingsUpdate, 0, nullptr);
    }
    // What the operator or Windows asks for.
    template <typename Work>
    void guarded(const Work& work) {
        try {
            work();
        } catch (const std::exception&) {
        }
    }

    // All that came from the server, as text.
    std::string contents() {
        const Exempt exempt;
        std::string text = std::to_string(session_.store().size()) + " variables";
        for (std::size_t row = 0; row < shown_.table.size(); ++row)
            text.append(", ").append(shown_.table.model().at(row).name.value_or("?"));
        for (const ScheduleRecord& schedule : session_.schedules().records())
            text.append(", ").append(schedule.name.value_or("?"));
        for (const Group& group : session_.directory().groups())
            text.append(", ").append(group.key()).append(" of ").append(std::to_string(group.members.size()));
        for (const AudioMessage& message : session_.directory().messages())
            text.append(", ").append(message.name());
        text.append(", ").append(std::to_string(session_.checker().withProblems())).append(" with problems");
        return text + (waiting ? ", please wait" : "") + (session_.isReady() ? "" : ", not ready");
    }
    Session& session() { return session_; }

    bool waiting = false;  // the please-wait window is open
    bool open = true;

  private:
    // SessionHost
    void startTimer(std::uintptr_t timer, std::uint32_t milliseconds) override {
        refused_.note(timer, milliseconds, startIfAllowed(timer));
    }
    void stopTimer(std::uintptr_t timer) override {
        refused_.forget(timer);
        running_[timer] = false;
    }
    LogonOutcome runLogonDialog(const LogonEntry& entry, LogonLink&) override {
        resendSettings();
        return {true, false, {"a logon ID that needs memory", entry.password, "10.0.0.9", "3011", true, false}};
    }
    void saveSettings() override {}
    void showTitle(const std::string&) override {}
    void refreshEventList() override { painted_ = "a row whose text needs memory " + std::to_string(++paints_); }
    void openPleaseWait() override { waiting = true; }
    void closePleaseWait() override { waiting = false; }
    void endMainWindow() override {}
    void removeKeyboardHook() override {}
    void removeTrayIcon() override {}
    void pause(std::uint32_t) override { deliver(); }
    std::string findAdapterName(const std::string&) override { return "an adapter with a long name"; }
    std::string programVersion() override { return "a version text that needs memory"; }

    // ServerLink
    bool isOpen() const override { return open; }
    std::int32_t stop() override { return tell(event_code::kServerStop, 0, nullptr); }
    void unload() override { open = false; }
    std::int32_t getGroupMembers(std::uint32_t id) override {
        return tell(event_code::kGroupMember, static_cast<std::int32_t>(id), &kDoor);
    }
    std::int32_t getMessages() override {
        KSMessageRecord message{};
        setFieldText(message.name, "Chime");
        setFieldText(message.key, "chime");
        return tell(event_code::kGroupMessage, 0, &message);
    }
    std::int32_t resendSettings() override {
        const KSConnectionInfo door{.mac = kDoor};
        tell(event_code::kNewConnection, 1, nullptr, &door);
        KSGroupRecord group{.expectedMembers = 1};
        setFieldText(group.key, "Nurses");
        tell(event_code::kGroupInformation, 7, &group);
        return tell(event_code::kInitializationComplete, 0, nullptr);
    }
    std::int32_t subscribe(const std::string&) override {
        // Told twice: what is told last must be what remains.
        for (const char* round : {"an old name", name_}) {
            send("\\ORVS\\Schedules\\{a schedule's key}\\Name", round, 0);
            send("\\ORVS\\Events\\{the first Event's key}\\EventName", round, 0);
            send("\\ORVS\\Events\\{the first Event's key}\\completeBits", nullptr, 0);
            send("\\ORVS\\Events\\{the second Event's key}\\completeBits", nullptr, 0);
            send("\\ORVS\\Events\\{the second Event's key}\\EventName", round, 0);
            send("\\ORVS\\Events\\{the second Event's key}\\ScheduleKey", "an old name", 0);
        }
        for (const char* text : {"\\ORVS\\userName", "\\ORVS\\password", "\\ORVS\\smtpHost", "\\ORVS\\defaultFrom"})
            send(text, "a text that is longer than a short one", 0);
        send("\\ORVS\\completeBits", nullptr, 1);
        return 0;
    }

    // WindowPoster
    bool post(std::uint32_t, std::uintptr_t, std::intptr_t) override { return posted_ = !posts_.fails(); }
    bool send(std::uint32_t, std::uintptr_t, std::intptr_t) override {
        do
            deliver();
        while (session_.hasUndeliveredEvents());  // as the timer would
        return true;
    }
    void requestTimer() override { startIfAllowed(timer::kEventQueue); }

    static void send(const char* name, const char* text, std::uint32_t number) {
        const std::uint32_t type = text != nullptr ? variable_type::kString : variable_type::kDword;
        const KSVariableNotification notification{name, type, text, number};
        tell(event_code::kVariable, 0, &notification);
    }
    static std::int32_t tell(std::uint32_t code, std::int32_t number, const void* record,
                             const KSConnectionInfo* connection = nullptr) {
        event_memory::finishPiece();  // so that each block needs an allocation, which can fail
        EventCallback::receive(code, number, connection, record);
        return 0;
    }
    void deliver() {
        posted_ = running_[timer::kEventQueue] = false;
        bool done = false;
        guarded([&] { done = session_.deliverEvents(); });
        if (!done) startTimer(timer::kEventQueue, timer::kEventQueuePeriod);
    }
    bool startIfAllowed(std::uintptr_t timer) { return running_[timer] = !timers_.fails(); }

    static constexpr KSMac kDoor{2, 0, 0, 0, 0, 1};

    FakeClock clock_;
    LocalSettings settings_;
    FaultPlan& posts_;
    FaultPlan& timers_;
    const char* name_ = "a name that is long enough";
    std::string painted_;
    int paints_ = 0;
    std::bitset<timer::kLast + 1> running_;
    RefusedTimers refused_;
    bool posted_ = false;

  public:
    TrackingLog log;

  private:
    ShownEvents shown_;
    Session session_{*this, *this, *this, log, clock_, settings_, shown_.table};
};

}  // namespace orvc
