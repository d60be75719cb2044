#include "session_fixture.h"

namespace orvc {
namespace {

TEST_F(SessionTest, WhyTheLastLogonFailedIsKnownUntilOneSucceeds) {
    const auto attempt = [&](StartResult result) {
        link_.startResult = result;
        host_.logonLink->start({}, "op", "pw");
        return session_.logonFailure() ? std::optional(session_.logonFailure()->code) : std::nullopt;
    };
    host_.onDialog = [&] {
        EXPECT_EQ(attempt({-30, false}), -30);
        EXPECT_EQ(attempt({-5, false}), -5) << "while the dialog waits for its next try";
        EXPECT_EQ(attempt({0, false}), 0) << "a user without administrator rights";
        EXPECT_EQ(attempt({0, true}), std::nullopt);
        EXPECT_EQ(attempt({-2, false}), -2);
    };
    host_.outcome.success = false;
    timer(timer::kLogon);
    EXPECT_TRUE(session_.logonFailure().has_value());
    session_.logoff();
    EXPECT_FALSE(session_.logonFailure().has_value());
}

TEST_F(SessionTest, TimersDoNothingStandAloneNorInsideOneAnother) {
    session_.setConsoleMode(false);
    for (const std::uintptr_t id : {1, 2, 3, 8, 99})
        EXPECT_EQ(timer(id), "");
    session_.setConsoleMode(true);
    host_.onDialog = [this] {
        journal_.take();
        for (const std::uintptr_t id : {1, 2, 3, 4, 5, 6, 7})
            EXPECT_EQ(timer(id), "");
    };
    logOn();
}

TEST_F(SessionTest, TheSubscriptionStartFetchesMembersThenSubscribes) {
    logOn();
    const KSConnectionInfo info{.mac = kEntrance};
    group(1, "Late", 2);
    group(2, "Empty", 0);
    group(3, "There", 1);
    members(3, 1);
    event(1, 3, nullptr, &info);
    EXPECT_EQ(event(100), "log: Console initialization is complete; start timer 4 of 10");
    EXPECT_EQ(timer(timer::kSubscriptionStart),
              "stop timer 4; start timer 9 of 100; start timer 11 of 1000; KSCreateGroup 3; KSDeleteGroup 3; "
              "KSCreateGroup 1; KSGetGroupMembers 1");
    members(1, 1);
    group(1, "Late", 2);  // sent again: the member that came is forgotten
    members(1, 1);
    EXPECT_EQ(journal_.take(), "") << "waiting";
    const std::string rest = "KSGetMessages; create \\ORVS\\; subscribe \\ORVS\\; start timer 7 of 1; stop timer 9";
    members(1, 1);
    EXPECT_EQ(journal_.take(), "log: getListIcoms: Done with group; KSDeleteGroup 1; " + rest);
    EXPECT_EQ(session_.directory().findGroup("There")->members.front().device,
              session_.directory().findDevice(kEntrance))
        << "no placeholder any more";
}

TEST_F(SessionTest, MembersThatDoNotComeHoldTheSubscriptionUpForHalfAMinute) {
    logOn();
    group(1, "Doors", 2);
    timer(timer::kSubscriptionStart);
    members(1, 1);
    journal_.take();
    event(101);
    EXPECT_EQ(timer(timer::kReload), "") << "a reload waits";
    clock_.seconds += 30;
    EXPECT_EQ(timer(timer::kMemberWait), "");
    clock_.seconds += 1;
    EXPECT_EQ(timer(timer::kMemberWait),
              "log: getListIcoms: Group 'Doors' has 1 of its 2 members, waiting no longer; KSDeleteGroup 1; "
              "KSGetMessages; create \\ORVS\\; subscribe \\ORVS\\; start timer 7 of 1; stop timer 9");
    EXPECT_NE(timer(timer::kReload).find("open please-wait"), std::string::npos);
}

TEST_F(SessionTest, WhatEndsTheLogonDuringTheWaitForMembersEndsTheSubscription) {
    for (const bool isShutdown : {false, true}) {
        logOn();
        group(1, "Doors", 2);
        timer(timer::kSubscriptionStart);
        if (isShutdown)
            session_.doShutdown();
        else
            event(15);
        journal_.take();
        members(1, 2);
        for (const std::uintptr_t id : {timer::kMemberWait, timer::kSubscriptionStart})
            EXPECT_EQ(timer(id).find("KS"), std::string::npos);
    }
}

TEST_F(SessionTest, StandAloneTheLinkIsTheLogon) {
    session_.setConsoleMode(false);
    EXPECT_TRUE(session_.isConnected());
    EXPECT_FALSE(session_.isEditable());
    event(100);
    EXPECT_EQ(timer(timer::kSubscriptionStart),
              "stop timer 4; start timer 9 of 100; start timer 11 of 1000; KSGetMessages; create \\ORVS\\; subscribe "
              "\\ORVS\\; start timer 7 of 1; stop timer 9");
    EXPECT_EQ(session_.schedules().records().size(), 1u) << "the built-in one";
    variable("\\ORVS\\completeBits", nullptr, 0);
    timer(timer::kCompletionWait);
    EXPECT_TRUE(session_.isEditable());
    event(101);
    EXPECT_NE(timer(timer::kReload).find("KSResendSettings"), std::string::npos);
    event(15);
    EXPECT_FALSE(session_.isConnected());
    EXPECT_EQ(timer(timer::kLogon), "") << "no logon dialog";
    event(100);
    EXPECT_NE(timer(timer::kSubscriptionStart).find("subscribe"), std::string::npos) << "the server is back";
    link_.open = false;
    EXPECT_FALSE(session_.isConnected());
}

TEST_F(SessionTest, EveryStopReleasesWhoeverWaitsForTheWindow) {
    const auto connect = [this] {
        const KSConnectionInfo info{};
        window_.onSend = [this] {
            ADD_FAILURE() << "waits for the thread that is stopping the link";
            return session_.deliverEvents();
        };
        session_.callback().onEvent(1, 1, &info, nullptr);
        window_.onSend = [this] { return session_.deliverEvents(); };
    };
    link_.onCall = [&](const std::string& call) {
        if (call == "KSStop") connect();
    };
    logOn();
    session_.logoff();
    EXPECT_TRUE(session_.deliverEvents());
    EXPECT_EQ(session_.directory().devices().size(), 1u) << "it is delivered all the same";
    event(15);
    host_.onDialog = [this] { host_.logonLink->stop(); };  // a user without rights
    logOn();
}

TEST_F(SessionTest, WithATextMissingTheWaitTimesOutAndTheConsoleIsReadyAnyway) {
    subscribe();
    for (const char* name : {"userName", "password", "smtpHost"})
        variable(std::string("\\ORVS\\") + name, "");
    variable("\\ORVS\\completeBits", nullptr, 1);
    clock_.seconds += 2;
    EXPECT_EQ(timer(timer::kCompletionWait), "");
    EXPECT_FALSE(session_.isReady());
    clock_.seconds += 1;
    EXPECT_EQ(timer(timer::kCompletionWait), kTimeout + "stop timer 7; refresh list");
    EXPECT_TRUE(session_.isReady());
}

TEST_F(SessionTest, NoPasswordIsLogged) {
    host_.outcome.entry.password = "logon-secret";
    subscribe();
    std::string told = journal_.take();
    // Whatever type the server gives them.
    for (const std::uint32_t type : {0xC0000001u, 0xC0000004u, 0xC0000000u, 0u, 0x41000001u})
        told += variable("\\ORVS\\password", "mail-secret", 0, type);
    event(15);
    EXPECT_EQ(told.find("secret"), std::string::npos) << told;
    EXPECT_NE(told.find("for \\ORVS\\password (string variable '***' 0xc0000001)"), std::string::npos) << told;
    EXPECT_NE(variable("\\ORVS\\userName", "mailer", 0, 0xC0000001).find("'mailer'"), std::string::npos);
}

TEST_F(SessionTest, ALogonIsKeptForTheNextStartAsItsBoxSays) {
    for (const bool saves : {true, false}) {
        settings_ = {};
        host_.outcome.entry.saveCredentials = saves;
        logOn();
        EXPECT_EQ(settings_.userName + "/" + settings_.userPassword, saves ? "op/pw" : "/");
        EXPECT_EQ(settings_.ipAddress + "/" + settings_.adapterName, "10.0.0.9/adapter for 10.0.0.9");
        EXPECT_EQ(settings_.ipPort, 3011);
        event(15);
    }
}

TEST_F(SessionTest, WhatAnotherConsoleDeletesGoesAndItsOwnDeletionNeverTakesWhatWasMadeSince) {
    becomeReady();
    const std::string path = "\\ORVS\\Events\\{A}";
    variable(path + "\\EventName", "a");
    variable("\\ORVS\\Schedules\\{S}\\Name", "s");
    const std::uint32_t deletedKey = variable_type::kKey | variable_type::kDeleted;
    const std::uint32_t deletedValue = variable_type::kString | variable_type::kDeleted;
    variable(path + "\\EventName", nullptr, 0, deletedValue);
    EXPECT_EQ(session_.events().size(), 1u) << "a single value's deletion does not reach the record";
    session_.apply({EventChange{*session_.events().find("{A}"), std::nullopt, {}}});
    variable(path + "\\EventName", "made again");
    variable(path + "\\", nullptr, 0, deletedKey);
    EXPECT_EQ(session_.events().size(), 1u) << "a late echo";
    variable(path + "\\", nullptr, 0, deletedKey);
    EXPECT_EQ(session_.events().size(), 0u);
    variable("\\ORVS\\Schedules\\{S}\\", nullptr, 0, deletedKey);
    EXPECT_EQ(session_.schedules().records().size(), 1u) << "the built-in one";
}

TEST_F(SessionTest, EventsAreJudgedOnceAllThatCameBeforeIsDelivered) {
    subscribe();
    const std::string path = "\\ORVS\\Events\\{A}\\";
    variable(path + "completeBits", nullptr, 0);
    variable(path + "ScheduleKey", "{S}");
    variable("\\ORVS\\completeBits", nullptr, 0);
    EXPECT_EQ(session_.checker().withProblems(), 0u);
    const KSVariableNotification schedule{"\\ORVS\\Schedules\\{S}\\Name", variable_type::kString, "s", 0};
    session_.callback().onEvent(104, 0, nullptr, &schedule);
    timer(timer::kCompletionWait);
    ASSERT_TRUE(session_.isReady());
    EXPECT_EQ(session_.checker().disabled(), 0u) << "a Schedule is still to be delivered";
    session_.deliverEvents();
    EXPECT_EQ(session_.checker().disabled(), 1u);
    EXPECT_EQ(session_.checker().withProblems(), 0u);
    variable(path + "ScheduleKey", "{gone}");
    EXPECT_EQ(session_.checker().withProblems(), 1u);
    std::size_t meanwhile = 1;
    host_.onWait = [&] { meanwhile = session_.checker().withProblems(); };
    event(101);
    timer(timer::kReload);
    EXPECT_EQ(meanwhile, 0u) << "a reload runs";
    variable("\\ORVS\\completeBits", nullptr, 0);
    timer(timer::kCompletionWait);
    EXPECT_EQ(session_.checker().withProblems(), 1u);
    event(15);
    EXPECT_EQ(session_.checker().withProblems(), 0u);
}

TEST_F(SessionTest, WhatTheServerDidNotStoreIsAProblemUntilTheEventIsSavedAgain) {
    becomeReady();
    EventRecord record;
    record.key = "{A}";
    record.scheduleKey = "{Default}";
    const auto save = [&] {
        session_.apply({EventChange{record, record, {}}});
        for (const VariableValue& value : eventValues(record, false))
            if (link_.refused.empty() || !value.name.starts_with(link_.refused))
                variable(value.name, value.text ? value.text->c_str() : nullptr, value.number,
                         value.text ? variable_type::kString : variable_type::kDword);
        timer(timer::kGate);
        std::string problems;
        for (const auto& [code, about] : session_.checker().problemsOf(*session_.events().find("{A}")))
            problems.append(problemName(code)).append(" ") += about;
        return problems;
    };
    record.completeBits = 1;
    record.fileGuid = "";
    link_.refused = "\\ORVS\\Events\\{A}\\Disabled";
    EXPECT_EQ(save(), "not-stored Disabled");
    link_.refused.clear();
    EXPECT_EQ(save(), "");
}

}  // namespace
}  // namespace orvc
