#include "checker/event_checker.h"

#include "checker/problem_rules.h"
#include "checker_fixture.h"

namespace orvc {
namespace {

constexpr KSMac kUnknown{0x02, 0x4B, 0x53, 0x10, 0x00, 0x09};
constexpr KSMac kNoDevice{};
const std::string kNeverOn(kHoursTextLength, '0');
const std::string kAlwaysOn(kHoursTextLength, 'f');

class EventCheckerTest : public CheckerTest {
  protected:
    EventCheckerTest() {
        events_.store(wholeEvent("{A}"));
        checker_.setReady(true);
        affected_ = {};
    }
    template <typename Change>
    void edit(const char* key, const Change& change) {
        EventRecord record = *events_.find(key);
        change(record);
        events_.store(record);
    }
    void update(const std::string& path, const std::string& text, std::uint32_t number = 0) {
        events_.updateVariable({"\\ORVS\\Events\\" + path, 0, text, number});
    }
    std::string problems(const char* key) const {
        std::string text;
        for (const auto& [code, about] : checker_.problemsOf(*std::as_const(events_).find(key)))
            text.append(text.empty() ? "" : ", ").append(problemName(code)).append(about.empty() ? "" : " ") += about;
        return text;
    }
};

TEST_F(EventCheckerTest, EachProblemArisesAndIsToldAndGoesWithItsCause) {
    using Step = std::function<void()>;
    const auto record = [this](const auto& change) { return Step([=, this] { edit("{A}", change); }); };
    const auto respond = [&](Response response, const char* fileGuid, const char* filename) {
        return record([=](EventRecord& r) {
            r.responseType = static_cast<std::uint32_t>(response);
            r.responseDevice = response == Response::kEmail ? kNoDevice : kGate;
            r.fileGuid = fileGuid;
            r.ttsFilename = filename;
            r.messageKey = "";
        });
    };
    const auto hours = [this](std::string text) { return Step([=, this] { schedule("{N}", "Hours", text); }); };
    const auto atEight = record([](EventRecord& r) {
        r.triggerType = static_cast<std::uint32_t>(Trigger::kTimeOfDay);
        r.timeOfDay = 32;
    });
    const Step nothing = [] {};
    struct Case {
        std::string problems;
        Step before;
        Step cause;
        Step cure;
        bool causeIsTold = false;  // the cause lies outside the Event
        bool cureIsTold = false;
    };
    // Half an hour from 8:00 AM on is slot 16: the first bit of a day's third byte.
    std::string afterEight = kAlwaysOn;
    for (std::size_t day = 0; day < 7; ++day)
        afterEight.replace(day * 12 + 4, 2, "fe");
    const Case cases[] = {
        {"source-device 02:4b:53:10:00:09", nothing, record([](EventRecord& r) { r.triggerDevice = kUnknown; }),
         [&] { device(kUnknown, ""); }, false, true},
        {"source-group Ghosts", nothing, record([](EventRecord& r) { r.triggerGroupKey = "Ghosts"; }),
         [&] { group(7, "Ghosts"); }, false, true},
        {"destination-device 02:4b:53:10:00:09", nothing, record([](EventRecord& r) { r.responseDevice = kUnknown; }),
         [&] { device(kUnknown, ""); }, false, true},
        {"destination-group Ghosts", nothing, record([](EventRecord& r) { r.responseGroupKey = "Ghosts"; }),
         [&] { group(7, "Ghosts", 3); }, false, true},
        {"empty-group Nobody", nothing, record([](EventRecord& r) {
             r.triggerDevice = kNoDevice;
             r.triggerGroupKey = "Nobody";
         }),
         [&] { directory_.doNewGroupMember(2, kUnknown); }, false, true},
        {"schedule {N}", nothing, [&] { schedules_.remove(*schedules_.find("{N}")); },
         [&] { schedule("{N}", "Name", "again"); }, true, true},
        {"schedule-never {N}", nothing, hours(kNeverOn), hours(kAlwaysOn), true, true},
        {"time-outside {N}", atEight, hours(afterEight), hours(kAlwaysOn), true, true},
        {"message gong", nothing, record([](EventRecord& r) {
             r.responseType = static_cast<std::uint32_t>(Response::kServerAudio);
             r.messageKey = "gong";
         }),
         [&] { message("gong", "Gong"); }, false, true},
        {"message", nothing, respond(Response::kServerAudio, "", ""),
         record([](EventRecord& r) { r.messageKey = "chime"; })},
        {"no-text", nothing, respond(Response::kTtsMessage, "", ""), respond(Response::kTtsMessage, "{F}", "")},
        {"no-email", nothing, respond(Response::kEmail, "", ""), respond(Response::kEmail, "{F}", "")},
        {"no-file", nothing, respond(Response::kTtsFile, "", ""), respond(Response::kTtsFile, "", "a file")},
        {"no-mail-server", respond(Response::kEmail, "{F}", ""), [&] { mailHost(""); }, [&] { mailHost("mail"); }, true,
         true},
        {"same-as {B}", nothing, [&] { events_.store(wholeEvent("{B}")); },
         [&] { edit("{B}", [](EventRecord& r) { r.disabled = 1; }); }, true, true},
        {"not-stored Disabled, EventName", nothing,
         [&] {
             checker_.setNotStored("{A}", {"Disabled", "EventName"});
         },
         [&] { checker_.setNotStored("{A}", {}); }, true, true},
        {"bad-data", nothing, record([](EventRecord& r) { r.badData = 1; }),
         record([](EventRecord& r) { r.badData = 0; })},
        {"offline 02:4b:53:10:00:02", nothing, [&] { directory_.disconnectDevice(kGate); },
         [&] { device(kGate, "Gate"); }, true, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.problems);
        events_.clear();
        directory_.clear();
        for (const auto& [mac, name] : {std::pair(kFrontDoor, "Front door"), std::pair(kGate, "Gate")})
            device(mac, name);
        group(2, "Nobody");
        message("chime", "Chime");
        events_.store(wholeEvent("{A}"));
        c.before();
        EXPECT_EQ(problems("{A}"), "");
        const auto expectAfter = [&](const Step& step, bool isTold, const std::string& expected) {
            affected_ = {};
            step();
            EXPECT_EQ(problems("{A}"), expected);
            EXPECT_EQ(affected_.keys.contains("{A}"), isTold);
        };
        expectAfter(c.cause, c.causeIsTold, c.problems);
        const std::size_t others = c.problems == "same-as {B}" ? 1 : 0;
        EXPECT_EQ(checker_.withProblems(), c.problems.starts_with("offline") ? 0 : 1 + others);
        expectAfter(c.cure, c.cureIsTold, "");
        EXPECT_EQ(checker_.withProblems(), 0u);
    }
}

TEST_F(EventCheckerTest, TheErrorMarkCountsOnlyWhereNothingElseTellsWhy) {
    edit("{A}", [](EventRecord& r) { r.badData = 1; });
    directory_.disconnectDevice(kGate);
    EXPECT_EQ(problems("{A}"), "bad-data, offline 02:4b:53:10:00:02") << "a hint is no reason";
    edit("{A}", [](EventRecord& r) { r.triggerDevice = kUnknown; });
    EXPECT_EQ(problems("{A}"), "source-device 02:4b:53:10:00:09, offline 02:4b:53:10:00:02");
    events_.store(wholeEvent("{B}"));
    edit("{A}", [](EventRecord& r) { r.triggerDevice = kFrontDoor; });
    EXPECT_EQ(problems("{A}"), "same-as {B}, offline 02:4b:53:10:00:02");
    events_.remove(*events_.find("{B}"));
    EXPECT_EQ(problems("{A}"), "bad-data, offline 02:4b:53:10:00:02");
}

// What an Event names and does not use, and what exists without being listed.
TEST_F(EventCheckerTest, OnlyWhatAnEventUsesIsJudged) {
    const auto problemsWith = [&](const auto& change) {
        EventRecord record = wholeEvent("{A}");
        change(record);
        events_.store(record);
        return problems("{A}");
    };
    const auto trigger = [](EventRecord& r, Trigger code) { r.triggerType = static_cast<std::uint32_t>(code); };
    for (const Trigger without : {Trigger::kServerConnection, Trigger::kTimeOfDay}) {
        EXPECT_EQ(problemsWith([&](EventRecord& r) {
                      trigger(r, without);
                      r.triggerDevice = kUnknown;
                      r.triggerGroupKey = "Nobody";
                  }),
                  "");
        EXPECT_EQ(problemsWith([&](EventRecord& r) {
                      trigger(r, without);
                      r.triggerGroupKey = "Ghosts";
                  }),
                  "source-group Ghosts")
            << "the Status column says that it is wrong";
    }
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.triggerDevice = r.responseDevice = kNoDevice; }), "");
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.scheduleKey = ""; }), "");
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.responseType = 0, r.responseDevice = kUnknown; }), "");
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.triggerGroupKey = "Nobody"; }), "") << "the device counts";
    group(2, "Nobody", 4);
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.triggerDevice = kNoDevice, r.triggerGroupKey = "Nobody"; }), "")
        << "its members are to come";
    EXPECT_EQ(problemsWith([&](EventRecord& r) { trigger(r, Trigger::kTimeOfDay), r.timeOfDay = 96; }), "time-outside");
    EXPECT_EQ(problemsWith([&](EventRecord& r) { trigger(r, Trigger::kTimeOfDay), r.timeOfDay = 95; }), "");
    schedule("{N}", "Hours", kNeverOn);
    EXPECT_EQ(problemsWith([&](EventRecord& r) { trigger(r, Trigger::kTimeOfDay); }), "schedule-never {N}");
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.scheduleKey = "Office hours"; }), "schedule-never Office hours");
    schedule("{M}", "Name", "hours to come");
    EXPECT_EQ(problemsWith([](EventRecord& r) { r.scheduleKey = "{M}"; }), "");
    EXPECT_EQ(problemsWith([](EventRecord& r) {
                  r.scheduleKey = "{M}", r.triggerDevice = r.responseDevice = kNoDevice;
                  r.triggerGroupKey = r.responseGroupKey = "Ghosts";
              }),
              "source-group Ghosts, destination-group Ghosts");
}

TEST_F(EventCheckerTest, EventsDoTheSameWhenAllThatTheyUseIsTheSame) {
    struct Case {
        const char* what;
        std::function<void(EventRecord&)> change;
        bool isSame;
    };
    const Case cases[] = {
        {"name", [](EventRecord& r) { r.name = "another"; }, true},
        {"times", [](EventRecord& r) { r.lastTriggered = r.lastChecked = 7; }, true},
        {"group beside a device", [](EventRecord& r) { r.triggerGroupKey = "Nurses"; }, true},
        {"delay that is not used", [](EventRecord& r) { r.timeoutSeconds = 9; }, true},
        {"Schedule by name", [](EventRecord& r) { r.scheduleKey = "Office hours"; }, true},
        {"file of a relay", [](EventRecord& r) { r.fileGuid = "{F}"; }, true},
        {"trigger", [](EventRecord& r) { r.triggerType = 2; }, false},
        {"source", [](EventRecord& r) { r.triggerDevice = kGate; }, false},
        {"delay", [](EventRecord& r) { r.timeoutType = 1, r.timeoutSeconds = 9; }, false},
        {"Schedule", [](EventRecord& r) { r.scheduleKey = "{Default}"; }, false},
        {"response", [](EventRecord& r) { r.responseType = 2; }, false},
        {"destination", [](EventRecord& r) { r.responseDevice = kFrontDoor; }, false},
        {"disabled", [](EventRecord& r) { r.disabled = 1; }, false},
        {"Disabled not received", [](EventRecord& r) { r.disabled.reset(); }, false},
    };
    for (const Case& c : cases) {
        EventRecord other = wholeEvent("{B}");
        c.change(other);
        events_.store(other);
        EXPECT_EQ(problems("{A}"), c.isSame ? "same-as {B}" : "") << c.what;
        EXPECT_EQ(problems("{B}"), c.isSame ? "same-as {A}" : "") << c.what;
    }
    // What is played, read or sent counts too; an Event that does nothing does the same as none.
    for (const auto& [response, isSame] : {std::pair(Response::kServerAudio, false),
                                           {Response::kTtsFile, false},
                                           {Response::kTtsMessage, false},
                                           {Response::kEmail, false},
                                           {Response::kNone, false},
                                           {Response::kDeactivateRelay, true}}) {
        EventRecord record = wholeEvent("{A}");
        record.responseType = static_cast<std::uint32_t>(response);
        for (const char* const key : {"{A}", "{B}"}) {
            record.key = key;
            record.messageKey = record.fileGuid = record.ttsFilename = key == std::string("{A}") ? "chime" : "gong";
            events_.store(record);
        }
        EXPECT_EQ(problems("{A}") == "same-as {B}", isSame) << static_cast<int>(response);
    }
}

TEST_F(EventCheckerTest, NothingIsJudgedBeforeTheConfigurationIsReady) {
    edit("{A}", [](EventRecord& r) { r.triggerDevice = kUnknown; });
    EXPECT_EQ(checker_.withProblems(), 1u);
    checker_.setReady(false);
    EXPECT_TRUE(affected_.all);
    EXPECT_EQ(problems("{A}"), "");
    EXPECT_EQ(checker_.withProblems() + checker_.disabled() + checker_.index().countUsersOfDevice(kGate), 0u);
    update("{B}\\completeBits", "", 0);
    update("{C}\\EventName", "never complete");
    affected_ = {};
    checker_.setReady(true);
    EXPECT_TRUE(affected_.all);
    EXPECT_EQ(problems("{A}"), "source-device 02:4b:53:10:00:09");
    EXPECT_EQ(checker_.disabled(), 1u) << "one whose Disabled has not come counts, one that is not shown does not";
}

TEST_F(EventCheckerTest, AnEventThatIsShownIsJudgedAlsoWhileItLacksAValue) {
    update("{A}\\completeBits", "", 0xFFFFFFFF);
    affected_ = {};
    update("{A}\\TriggerDeviceMAC", "02:4b:53:10:00:09");
    EXPECT_EQ(problems("{A}"), "source-device 02:4b:53:10:00:09");
    EXPECT_TRUE(affected_.keys.contains("{A}")) << "no list heard of it";
    EXPECT_EQ(checker_.index().countUsersOfDevice(kUnknown), 1u);
    update("{A}\\Disabled", "", 1);
    EXPECT_EQ(checker_.disabled(), 1u);
}

// As the server does with a reload: values that are the same are no news, and what was found stays where it was.
TEST_F(EventCheckerTest, AScheduleIsFoundAfterItsValuesCameAgain) {
    const std::string key =
        "{5B6E0C1A-4F0B-4E59-9C64-2D1C6B0E7A01}";  // GUIDs are longer than what a string keeps inside
    schedule(key, "Name", "Late shift");
    schedule(key, "Hours", kNeverOn);
    edit("{A}", [&](EventRecord& r) { r.scheduleKey = key; });
    affected_ = {};
    schedule(key, "Key", key);
    schedule(key, "Name", "Late shift");
    EXPECT_TRUE(affected_.keys.empty());
    EXPECT_EQ(checker_.index().countUsersOfSchedule(key), 1u);
    EXPECT_EQ(problems("{A}"), "schedule-never " + key);
    edit("{A}", [](EventRecord& r) { r.name = "judged again"; });
    EXPECT_EQ(problems("{A}"), "schedule-never " + key);
}

TEST_F(EventCheckerTest, WhatWasNotStoredEndsWithTheEvent) {
    checker_.setNotStored("{A}", {"EventName"});
    checker_.setReady(false);
    checker_.setReady(true);
    EXPECT_EQ(problems("{A}"), "not-stored EventName");
    events_.remove(*events_.find("{A}"));
    events_.store(wholeEvent("{A}"));
    EXPECT_EQ(problems("{A}"), "");
    checker_.setNotStored("{A}", {"EventName"});
    checker_.setNotStored("{unknown}", {"EventName"});
    events_.clear();
    events_.store(wholeEvent("{A}"));
    EXPECT_EQ(problems("{A}"), "");
}

}  // namespace
}  // namespace orvc
