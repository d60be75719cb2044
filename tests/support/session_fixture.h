// A session around fakes: a server, a window and a host whose calls a journal keeps.
#pragma once

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "fake_server_link.h"
#include "fake_session_host.h"
#include "fake_window.h"
#include "session/session.h"
#include "shown_events.h"

namespace orvc {
inline constexpr KSMac kEntrance{2, 0, 0, 0, 0, 1};
inline constexpr KSVariableNotification kEarly{"\\ORVS\\completeBits", 0, nullptr, 0};
inline const std::string kTimeout =
    "log: doWaitSystemVariableComplete: Timeout waiting for system variables to complete; ";

class SessionTest : public ::testing::Test {
  protected:
    SessionTest() {
        window_.onSend = [this] { return session_.deliverEvents(); };
        host_.outcome = {true, false, {"op", "pw", "10.0.0.9", "3011", true, false}};
        session_.setConsoleMode(true);
    }
    // What one event of the library, or one tick of a timer, brings about.
    std::string event(std::uint32_t code, std::int32_t number = 0, const void* data = nullptr,
                      const void* connection = nullptr) {
        session_.callback().onEvent(code, number, connection, data);
        session_.deliverEvents();
        return journal_.take();
    }
    std::string timer(std::uintptr_t id) {
        session_.onTimer(id);
        return journal_.take();
    }
    void group(std::uint32_t id, std::string_view key, std::uint32_t members) {
        KSGroupRecord record{.expectedMembers = members};
        setFieldText(record.key, key);
        session_.callback().onEvent(80, static_cast<std::int32_t>(id), nullptr, &record);
        session_.deliverEvents();
    }
    void members(std::int32_t groupId, int count) {
        for (; count > 0; --count)
            session_.callback().onEvent(81, groupId, nullptr, &kEntrance);
        session_.deliverEvents();
    }
    std::string variable(const std::string& name, const char* text, std::uint32_t number = 0, std::uint32_t type = 0) {
        const KSVariableNotification notification{name.c_str(), type, text, number};
        return event(104, 0, &notification);
    }
    void logOn() {
        timer(timer::kLogon);
        ASSERT_TRUE(session_.isConnected());
    }
    void subscribe() {
        logOn();
        event(100);
        timer(timer::kSubscriptionStart);
    }
    void becomeReady() {
        subscribe();
        variable("\\ORVS\\completeBits", nullptr, 0);
        EXPECT_EQ(timer(timer::kCompletionWait), "stop timer 7; refresh list");
        ASSERT_TRUE(session_.isReady());
    }

    Journal journal_;
    JournalLog log_{journal_};
    FakeClock& clock_ = log_.clock;
    FakeServerLink link_{journal_};
    FakeSessionHost host_{journal_};
    FakeWindow window_;
    LocalSettings settings_;
    ShownEvents shown_;
    Session session_{host_, link_, window_, log_.log, clock_, settings_, shown_.table};
};

}  // namespace orvc
