#include "session/gate.h"

#include "editor_fixture.h"
#include "editors/event/event_entry.h"
#include "shown_events.h"

namespace orvc {
namespace {

constexpr char kNew[] = "{A0000000-0000-0000-0000-000000000000}";
constexpr char kOld[] = "{00000001-0002-0003-0405-060708090A0B}";
constexpr char kDeleted[] =
    "KSFileDelete {00000001-0002-0003-0405-060708090A0B}; "
    "log: fillEvent: Deleted file GUID '{00000001-0002-0003-0405-060708090A0B}'; ";
constexpr char kWritten[] =
    "KSFileCreate; log: fileEvent: Created GUID {A0000000-0000-0000-0000-000000000000}; "
    "KSFileWrite {A0000000-0000-0000-0000-000000000000} ";

const char* nameOf(Outcome outcome) {
    constexpr const char* names[] = {"stored", "refused", "no echo", "link lost", "cancelled", "gone"};
    return names[static_cast<int>(outcome)];
}

class GateTest : public EditorTest {
  protected:
    GateTest() {
        setUpInstallation();
        link_.newFile.data1 = 0xA0000000;
    }
    // What is called and logged when that change is made.
    std::string apply(Change change) {
        done_.clear();
        gate_.apply({std::move(change)}, [this](const std::vector<ChangeResult>& results) {
            for (const ChangeResult& result : results) {
                done_ += nameOf(result.outcome);
                for (const std::string& name : result.notStored)
                    done_ += " " + name;
                done_ += "; ";
            }
        });
        return journal_.take();
    }
    static EventChange rename(EventRecord record, const std::string& name) {
        EventChange change{record, std::move(record), {}};
        change.before->fileGuid = change.after->fileGuid = std::nullopt;
        change.after->name = name;
        return change;
    }
    void echo(const std::string& name, std::optional<std::string_view> text, std::uint32_t number = 0) {
        const Variable variable{name, text ? variable_type::kString : variable_type::kDword, text, number};
        gate_.observe(variable);
    }
    void echoAll(const VariableValues& values) {
        for (const VariableValue& v : values)
            echo(v.name, v.text, v.number);
    }
    std::string outcome() {
        gate_.step();
        return done_;
    }

    ShownEvents shown_;
    EventList events_{shown_.table, log_.log, log_.clock};
    MailSettings mail_;
    Gate gate_{link_, {events_, schedules_, mail_, directory_}, log_.log, log_.clock};
    std::string done_;
};

TEST_F(GateTest, TheOldFileGoesBeforeANewOneAndBothBeforeTheValues) {
    const std::pair<Response, const char*> cases[] = {
        {Response::kActivateRelay, nullptr},
        {Response::kServerAudio, nullptr},
        {Response::kTtsFile, nullptr},
        {Response::kTtsMessage, "<TTS voice=\"default\" encoded=\"yes\">Hi &amp; &lt;go&gt;%0d%0a</TTS>"},
        {Response::kEmail,
         "<Email from=\"a\" to=\"b\" cc=\"\" bc=\"\" subject=\"s & <s> 5%\" encoded=\"yes\">100%%</Email>"}};
    for (const auto& [response, element] : cases) {
        for (const bool hadFile : {true, false}) {
            EventRecord record = completeRecord(response);
            if (!hadFile) record.fileGuid = std::nullopt;
            EventForm form = newForm();
            form.load(record);
            form.setSpokenText("Hi & <go>\r\n");
            form.setEmail({"a", "b", "cc", "bc", "s & <s> 5%", "100%"});
            std::string expected = hadFile ? kDeleted : "";
            if (element != nullptr)
                expected.append(kWritten)
                    .append("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<ORVSEventFile>\r\n\t")
                    .append(element)
                    .append("\r\n</ORVSEventFile>\r\n; ");
            expected += "create \\ORVS\\Events\\{E}; \\ORVS\\Events\\{E}\\EventName='Old'; ";
            const std::string calls = apply(changeFrom(form, record, "{E}"));
            EXPECT_EQ(calls.substr(0, expected.size()), expected);
            EXPECT_TRUE(calls.ends_with("\\Disabled=1; \\ORVS\\Events\\{E}\\completeBits=1")) << calls;
            EXPECT_EQ(events_.find("{E}")->fileGuid, element != nullptr ? kNew : "");
        }
    }
}

TEST_F(GateTest, TheErrorMarkIsClearedWhereTheEventWasMarkedOrNamedAMissingGroup) {
    const auto writesMark = [&](EventRecord record) {
        record.fileGuid.reset();
        return apply(EventChange{record, record, {}}).ends_with("completeBits=1; \\ORVS\\Events\\{E}\\badData=0");
    };
    EventRecord record = completeRecord(Response::kActivateRelay);
    EXPECT_FALSE(writesMark(record));
    record.badData = 1;
    EXPECT_TRUE(writesMark(record));
    EXPECT_EQ(events_.find("{E}")->badData, 0u);
    record.badData.reset();
    record.triggerGroupKey = "gone";
    EXPECT_TRUE(writesMark(record));
}

TEST_F(GateTest, ADeletionTakesTheFileThenTheKey) {
    const EventRecord& stored = events_.store(completeRecord(Response::kTtsMessage));
    EXPECT_EQ(apply(EventChange{stored, std::nullopt, {}}),
              std::string("KSFileDelete ").append(kOld).append("; remove \\ORVS\\Events\\{E}\\"));
    EXPECT_EQ(events_.size(), 0u);
    // Made again before the echo: the echo does not take it away, another console's deletion does.
    events_.store(completeRecord(Response::kTtsMessage));
    EXPECT_FALSE(gate_.isForeignDeletion("\\ORVS\\Events\\{E}\\"));
    EXPECT_EQ(outcome(), "stored; ");
    EXPECT_TRUE(gate_.isForeignDeletion("\\ORVS\\Events\\{E}\\"));
    // An echo that comes after the wait for it is still known.
    apply(EventChange{completeRecord(Response::kNone), std::nullopt, {}});
    log_.clock.seconds += 6;
    EXPECT_EQ(outcome(), "no echo \\ORVS\\Events\\{E}\\; ");
    EXPECT_FALSE(gate_.isForeignDeletion("\\ORVS\\Events\\{E}\\"));
}

TEST_F(GateTest, WhatIsRefusedIsLoggedAndReportedAndStopsNothing) {
    const struct {
        const char *refused, *log, *reported;
    } cases[] = {
        {"KSFileDelete", "fillEvent: Failed to delete file GUID '{00000001-", "stored; "},
        {"KSFileCreate",
         "fillEvent: Failed to create a file; log: makeGUID: Invalid guid to convert ''; KSFileWrite {00000000-",
         "refused payload file; "},
        {"KSFileWrite", "writeEventFileTts: Failed to write to GUID {A0000000-", "refused payload file; "},
        {"create", "applyChanges: '\\ORVS\\Events\\{E}' was refused (result -1)", "refused \\ORVS\\Events\\{E}; "},
        {"\\ORVS\\Events\\{E}\\ScheduleKey", "applyChanges: '\\ORVS\\Events\\{E}\\ScheduleKey' was refused (result -1)",
         "refused \\ORVS\\Events\\{E}\\ScheduleKey; "},
    };
    for (const auto& c : cases) {
        link_.refused = c.refused;
        const EventRecord record = completeRecord(Response::kTtsMessage);
        const std::string calls = apply(EventChange{record, record, {PayloadKind::kSpokenText, "bytes"}});
        EXPECT_NE(calls.find(std::string("; log: ") + c.log), std::string::npos) << calls;
        EXPECT_NE(calls.find("completeBits=1"), std::string::npos) << calls;
        echoAll(eventValues(*events_.find("{E}"), false));
        EXPECT_EQ(outcome(), c.reported);
    }
}

TEST_F(GateTest, AValueIsStoredOnceItComesBackAsItWasWritten) {
    EventRecord record = completeRecord(Response::kActivateRelay);
    apply(rename(record, "First"));
    apply(rename(record, "Second"));
    EXPECT_EQ(outcome(), "");
    const std::string name = "\\ORVS\\Events\\{E}\\EventName";
    echo(name, "another console's");
    VariableValues values = eventValues(*events_.find("{E}"), false);
    // The name's echo settles the name before it too, which it was written over.
    echoAll(values);
    EXPECT_EQ(outcome(), "stored; ");
    echoAll(values);
    EXPECT_EQ(outcome(), "stored; stored; ");
    EXPECT_FALSE(gate_.isBusy());

    apply(rename(record, "Third"));
    values = eventValues(*events_.find("{E}"), false);
    values.erase(values.begin());
    echoAll(values);
    echo(name, "changed by the server");
    log_.clock.seconds += 5;
    EXPECT_EQ(outcome(), "");
    log_.clock.seconds += 1;
    EXPECT_EQ(outcome(), "no echo " + name + "; ");
    EXPECT_EQ(journal_.take(), "log: applyChanges: '" + name + "' did not come back from the server");
    EXPECT_FALSE(gate_.isBusy());
}

TEST_F(GateTest, AChangeOfOneFieldWritesNothingElse) {
    events_.store(completeRecord(Response::kTtsMessage));
    EventRecord seen = *events_.find("{E}");
    seen.name = "before another console renamed it";
    EventRecord after = seen;
    after.disabled = 0;
    EXPECT_EQ(apply(EventChange{seen, after, {}, "Disabled"}),
              "\\ORVS\\Events\\{E}\\Disabled=0; \\ORVS\\Events\\{E}\\completeBits=1");
    EXPECT_EQ(events_.find("{E}")->disabled, 0u);
    EXPECT_EQ(events_.find("{E}")->name, "Old");
    after.scheduleKey = "{other}";
    EXPECT_EQ(apply(EventChange{seen, after, {}, "ScheduleKey"}),
              "\\ORVS\\Events\\{E}\\ScheduleKey='{other}'; \\ORVS\\Events\\{E}\\completeBits=1");
    // Deleted meanwhile: it is not made again.
    events_.clear();
    EXPECT_EQ(apply(EventChange{seen, after, {}, "Disabled"}), "");
    EXPECT_EQ(outcome(), "gone; ");
}

TEST_F(GateTest, SchedulesAndMailSettingsAreWrittenInTheirOrder) {
    ScheduleRecord schedule = *schedules_.find("{N}");
    schedule.name = "Late";
    schedule.hours = WeekMask{};
    const std::string path = "\\ORVS\\Schedules\\{N}\\";
    EXPECT_EQ(apply(ScheduleChange{std::nullopt, schedule}), path + "Name='Late'; " + path + "Key='{N}'; " + path +
                                                                 "Hours='" + std::string(84, '0') + "'; " + path +
                                                                 "CompleteBits=1");
    EXPECT_EQ(schedules_.find("{N}")->name, "Late");
    EXPECT_EQ(apply(ScheduleChange{schedule, std::nullopt}), "remove " + path);
    EXPECT_EQ(schedules_.find("{N}"), nullptr);

    mail_.userName = "new on the server";
    MailChange change;
    change.before.userName = change.after.userName = "as it was opened";
    change.after.smtpHost = "host";
    EXPECT_EQ(apply(change),
              "create \\ORVS\\; \\ORVS\\userName='new on the server'; \\ORVS\\password=''; \\ORVS\\smtpHost='host'; "
              "\\ORVS\\defaultFrom=''; \\ORVS\\smtpPort=25; \\ORVS\\completeBits=1")
        << "what was not changed is written as it is by now";
}

TEST_F(GateTest, ManyAreWrittenInSlicesAndCancelledOrLostBetweenTwoRecords) {
    for (const bool isLost : {false, true}) {
        std::vector<Change> changes;
        for (int i = 0; i < 200; ++i) {
            EventRecord record = completeRecord(Response::kActivateRelay);
            record.key = formatText("{%d}", i);
            changes.emplace_back(rename(record, "new"));
        }
        // Each call takes a moment, so that a slice ends before the job does.
        link_.onCall = [](const std::string&) {
            const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(10);
            while (std::chrono::steady_clock::now() < end) {
            }
        };
        std::vector<ChangeResult> results;
        const Gate::Ticket ticket = gate_.apply(std::move(changes), [&](const auto& all) { results = all; });
        const std::size_t written = gate_.progress(ticket)->written;
        EXPECT_GT(written, 0u);
        EXPECT_LT(written, 200u);
        EXPECT_TRUE(gate_.step(std::chrono::milliseconds(0)));
        EXPECT_EQ(gate_.progress(ticket)->written, written + 1) << "at least one at a time";
        journal_.take();
        if (isLost) {
            gate_.linkLost();
        } else {
            gate_.cancel(ticket);
            log_.clock.seconds += 6;
            EXPECT_FALSE(gate_.step());
        }
        ASSERT_EQ(results.size(), 200u);
        EXPECT_STREQ(nameOf(results.front().outcome), isLost ? "link lost" : "no echo");
        EXPECT_STREQ(nameOf(results.back().outcome), isLost ? "link lost" : "cancelled");
        EXPECT_EQ(journal_.take().find("EventName="), std::string::npos);
        EXPECT_EQ(gate_.progress(ticket), std::nullopt);
        EXPECT_FALSE(gate_.isBusy());
    }
}

}  // namespace
}  // namespace orvc
