// Stops, logoff, reload and shutdown.
#include "session_fixture.h"

namespace orvc {
namespace {

TEST_F(SessionTest, AServerStopForgetsEverythingAndAsksForALogon) {
    becomeReady();
    group(1, "Doors", 0);
    variable("\\ORVS\\Events\\{A}\\EventName", "a");
    variable("\\ORVS\\Schedules\\{S}\\Name", "s");
    variable("\\ORVS\\userName", "mailer");
    EXPECT_EQ(
        event(15),
        "log: Event:Stop. Console disconnected from server; stop timer 4; stop timer 5; stop timer 7; stop timer 9; "
        "stop timer 10; stop timer 11; title ''; refresh list");
    EXPECT_FALSE(session_.isConnected() || session_.isReady());
    EXPECT_EQ(session_.events().size() + session_.store().size() + session_.directory().groups().size(), 0u);
    EXPECT_EQ(session_.schedules().records().size(), 1u) << "the built-in one";
    EXPECT_FALSE(session_.mailSettings().userName || session_.mailSettings().completeBits);
    logOn();
    EXPECT_TRUE(host_.shownEntry.mayLogOnAtOnce);
}

TEST_F(SessionTest, WhatWasDueWhenTheServerStoppedIsNotDoneForTheNextLogon) {
    subscribe();
    event(100);
    event(101);
    event(15);
    clock_.seconds += 60;
    logOn();
    const std::set<std::uintptr_t> running = host_.runningTimers;
    for (const std::uintptr_t id : running)
        EXPECT_EQ(timer(id), "") << "timer " << id;
    EXPECT_FALSE(session_.isReady());
    event(100);
    timer(timer::kSubscriptionStart);
    EXPECT_EQ(timer(timer::kCompletionWait), "") << "two seconds of its own";
}

TEST_F(SessionTest, LogoffAsksForALogonButNotByItself) {
    logOn();
    host_.onWait = [this] {
        EXPECT_EQ(journal_.take(), "KSStop; pause 1000");
        event(15);
        EXPECT_EQ(timer(timer::kLogon), "") << "no dialog in between";
    };
    session_.logoff();
    logOn();
    EXPECT_FALSE(host_.shownEntry.mayLogOnAtOnce);
    host_.onWait = nullptr;
    session_.logoff();
    event(15);
    logOn();
    EXPECT_FALSE(host_.shownEntry.mayLogOnAtOnce) << "a stop that comes long after its logoff";
    event(15);
    logOn();
    EXPECT_TRUE(host_.shownEntry.mayLogOnAtOnce) << "a stop of the server's own";
    link_.open = false;
    session_.logoff();
    EXPECT_EQ(journal_.take(), "") << "no link: nothing to stop";
}

TEST_F(SessionTest, AReloadEmptiesTheDirectoryAndClosesItsWindowWhenReady) {
    becomeReady();
    group(1, "Doors", 0);
    variable("\\ORVS\\Events\\{A}\\EventName", "a");
    clock_.seconds += 60;
    // What comes before the server was asked is not the answer.
    host_.onWait = [this] { session_.callback().onEvent(104, 0, nullptr, &kEarly), session_.deliverEvents(); };
    EXPECT_EQ(event(101), "log: Console settings update is available; start timer 5 of 100");
    EXPECT_EQ(timer(timer::kReload),
              "stop timer 5; open please-wait; refresh list; pause 200; log: Received subscription variable "
              "information for \\ORVS\\completeBits (key 0x00000000); "
              "log: releaseCurrentSettings: Deleting Server Group "
              "Information; KSGetMessages; KSResendSettings; start timer 7 of 1; start timer 6 of 100");
    EXPECT_TRUE(session_.isReloading() && !session_.isReady());
    EXPECT_EQ(session_.directory().groups().size(), 0u);
    EXPECT_EQ(session_.events().size(), 1u) << "Events stay";
    for (const std::uintptr_t id : {timer::kReload, timer::kReloadWait, timer::kCompletionWait})
        EXPECT_EQ(timer(id), "") << "still waiting, with a fresh deadline";
    variable("\\ORVS\\userName", "again");
    EXPECT_EQ(timer(timer::kCompletionWait), "") << "one value does not make the settings complete";
    variable("\\ORVS\\completeBits", nullptr, 0);
    EXPECT_EQ(timer(timer::kCompletionWait), "stop timer 7; refresh list");
    EXPECT_EQ(timer(timer::kReloadWait), "stop timer 6; close please-wait");
    EXPECT_FALSE(session_.isReloading());
}

TEST_F(SessionTest, AServerStopClosesThePleaseWaitWindowBeforeTheLogonDialogComes) {
    for (const bool inThePause : {false, true}) {
        becomeReady();
        const auto stop = [&] { EXPECT_NE(event(15).find("stop timer 6; close please-wait"), std::string::npos); };
        host_.onWait = inThePause ? stop : std::function<void()>();
        event(101);
        session_.onTimer(timer::kReload);
        if (!inThePause) {
            journal_.take();
            stop();
        }
        EXPECT_FALSE(session_.isReloading());
        EXPECT_EQ(journal_.take().find("KSResendSettings"), std::string::npos) << "nobody is asked in the pause";
    }
}

TEST_F(SessionTest, ShutdownStopsClosesAndUnloadsInOrderAndOnce) {
    becomeReady();
    link_.onCall = [this](const std::string& call) {
        if (call != "KSStop") return;
        session_.doShutdown();  // nested
        const KSConnectionInfo info{};
        session_.callback().onEvent(15, 0, nullptr, nullptr);
        session_.deliverEvents();
        window_.onSend = [this] {
            ADD_FAILURE() << "waits for the thread that is stopping the link";
            return session_.deliverEvents();
        };
        session_.callback().onEvent(1, 1, &info, nullptr);
    };
    const std::string stopped = "log: ORVC Version 1.2.3.4 Stopped; stop timer 3; stop timer 1; stop timer 2; ";
    session_.doShutdown();
    EXPECT_EQ(
        journal_.take(),
        stopped +
            "log: doShutdown: KSStop(); KSStop; remove tray icon; debugger: Event:Stop. Console Shutdown disconnected "
            "from server; log: EVENT:New Connection '' on socket 1 Status = 0x0; log: doShutdown: KSClose(); KSClose; "
            "log: doShutdown: FreeLibrary(); unload; remove hook; log: doShutdown: Done; remove tray icon");
    EXPECT_TRUE(session_.isShuttingDown());
    EXPECT_FALSE(session_.isConnected() || session_.hasUndeliveredEvents());
    EXPECT_EQ(session_.events().size() + session_.store().size(), 0u);
    session_.doShutdown();
    EXPECT_EQ(journal_.take(), stopped + "log: doShutdown: Done; remove tray icon");
}

}  // namespace
}  // namespace orvc
