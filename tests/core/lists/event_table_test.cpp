#include "lists/event_table.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "lists/shown_rows.h"
#include "resources/resource.h"
#include "shown_events.h"

namespace orvc {
namespace {

class EventTableTest : public testing::Test {
  protected:
    std::string cell(const EventRecord& record, std::size_t column) {
        shown_.table.eventChanged(record, true);
        std::string text = shown_.table.cell(0, column);
        shown_.table.eventGone(record);
        return text;
    }

    Journal journal_;
    JournalLog log_{journal_};
    Directory directory_{log_.log};
    ShownEvents shown_;
    bool ready_ = true;
};

TEST_F(EventTableTest, TheStatusFollowsSwitchMarkAndMissingGroups) {
    KSGroupRecord known{};
    setFieldText(known.key, "known");
    directory_.updateGroup(known);
    shown_.table.judgeBy(directory_, [this] { return ready_; });
    struct Case {
        OptionalDword disabled, badData;
        const char *source, *destination;
        bool ready;
        unsigned text;
    };
    const Case cases[] = {
        {0, {}, "", "", true, IDS_STATUS_AVAILABLE},
        {0, 0, "known", "known", true, IDS_STATUS_AVAILABLE},
        {1, 1, "gone", "", true, IDS_STATUS_DISABLED},
        {{}, {}, "", "", true, IDS_STATUS_DISABLED},
        {0, 1, "", "", true, IDS_STATUS_ERROR},
        {0, 1, "", "", false, IDS_STATUS_ERROR},
        {0, {}, "gone", "", true, IDS_STATUS_ERROR},
        {0, {}, "", "gone", true, IDS_STATUS_ERROR},
        {0, 0, "gone", "gone", false, IDS_STATUS_AVAILABLE},
    };
    for (const Case& c : cases) {
        EventRecord record;
        record.disabled = c.disabled;
        record.badData = c.badData;
        record.triggerGroupKey = c.source;
        record.responseGroupKey = c.destination;
        ready_ = c.ready;
        EXPECT_EQ(cell(record, 1), shown_.strings.text(c.text)) << c.source << "|" << c.destination;
        EXPECT_EQ(record.badData, c.badData) << "nothing is kept in the record";
    }
}

TEST_F(EventTableTest, ResponsesAndTimesAreShownInWords) {
    EventRecord record;
    for (const std::uint32_t code : {0u, 1u, 6u}) {
        record.responseType = code;
        EXPECT_EQ(cell(record, 3), shown_.strings.text(IDS_RESPONSE_NONE + code));
    }
    for (const OptionalDword code : {OptionalDword(7), OptionalDword(4'000'000'000), OptionalDword()}) {
        record.responseType = code;
        EXPECT_EQ(cell(record, 3), shown_.strings.text(IDS_RESPONSE_UNKNOWN));
    }
    for (const OptionalDword never : {OptionalDword(0), OptionalDword()}) {
        record.lastTriggered = never;
        EXPECT_EQ(cell(record, 2), shown_.strings.text(IDS_NEVER));
    }
    record.lastTriggered = 2'147'483'648;
    EXPECT_EQ(cell(record, 2), formatDate(shown_.clock.toLocal(2'147'483'648)));
    EXPECT_NE(cell(record, 2).find("2038"), std::string::npos);
}

TEST_F(EventTableTest, TheFurtherColumnsAreWhatAPersonCallsThem) {
    KSConnectionInfo device{};
    device.mac = {1};
    setFieldText(device.deviceName, "Front door");
    directory_.updateDevice(device, std::nullopt, 0);
    device.mac = {2};
    setFieldText(device.deviceName, "");
    directory_.updateDevice(device, std::nullopt, 0);
    KSMessageRecord message{};
    setFieldText(message.name, "Chime");
    setFieldText(message.key, "{chime}");
    directory_.doNewGroupMessageInfo(message);
    ScheduleList schedules(log_.log, log_.clock);
    schedules.updateVariable({"\\ORVS\\Schedules\\{night}\\Name", 0, "Night", 0});
    schedules.updateVariable({"\\ORVS\\Schedules\\{nameless}\\Hours", 0, "", 0});
    shown_.table.judgeBy(directory_, [] { return true; });
    shown_.table.nameSchedulesBy(schedules);
    shown_.table.tellProblemsBy([](const EventRecord& record) { return "Problem of " + *record.name; }, nullptr);
    for (const unsigned id : {IDS_DELAY_SECOND, IDS_DELAY_SECONDS, IDS_DELAY_MINUTE, IDS_DELAY_MINUTES})
        shown_.strings.texts[id] = "%s of " + std::to_string(id);
    const auto text = [](unsigned id) { return "#" + std::to_string(id); };
    using Id = EventColumnId;
    const auto trigger = [](std::uint32_t code) { return [=](EventRecord& r) { r.triggerType = code; }; };
    const auto time = [](std::uint32_t quarter) {
        return [=](EventRecord& r) { r.triggerType = 9, r.timeOfDay = quarter; };
    };
    const auto place = [](std::uint8_t first, const char* group) {
        return [=](EventRecord& r) {
            r.triggerDevice = r.responseDevice = {first};
            r.triggerGroupKey = r.responseGroupKey = group;
        };
    };
    const auto delay = [](std::uint32_t type, std::uint32_t seconds) {
        return [=](EventRecord& r) { r.timeoutType = type, r.timeoutSeconds = seconds; };
    };
    const auto schedule = [](const char* key) { return [=](EventRecord& r) { r.scheduleKey = key; }; };
    const auto content = [](std::uint32_t response) {
        return [=](EventRecord& r) {
            r.responseType = response;
            r.messageKey = "{chime}", r.fileGuid = "{guid}", r.ttsFilename = "a.txml";
        };
    };
    const struct {
        std::function<void(EventRecord&)> change;
        Id column;
        std::string text;
    } cases[] = {
        {[](EventRecord&) {}, Id::kTrigger, text(IDS_TRIGGER_UNKNOWN)},
        {trigger(0), Id::kTrigger, text(IDS_TRIGGER_NOT_CHOSEN)},
        {trigger(9), Id::kTrigger, text(IDS_TRIGGER_TIME_OF_DAY)},
        {trigger(10), Id::kTrigger, text(IDS_TRIGGER_UNKNOWN)},
        {trigger(8), Id::kSource, text(IDS_SOURCE_SERVER)},
        {time(0), Id::kSource, text(IDS_MIDNIGHT)},
        {time(95), Id::kSource, text(IDS_TIME_PM)},
        {time(96), Id::kSource, "96"},
        {place(0, ""), Id::kSource, ""},
        {place(1, "Nurses"), Id::kSource, "Front door"},
        {place(2, ""), Id::kSource, "02:00:00:00:00:00"},
        {place(3, ""), Id::kDestination, "03:00:00:00:00:00"},
        {place(0, "Nurses"), Id::kDestination, "Nurses"},
        {delay(0, 30), Id::kDelay, text(IDS_DELAY_NONE)},
        {delay(1, 0), Id::kDelay, text(IDS_DELAY_NONE)},
        {delay(1, 1), Id::kDelay, "1 of 711"},
        {delay(1, 90), Id::kDelay, "90 of 712"},
        {delay(1, 60), Id::kDelay, "1 of 713"},
        {delay(1, 7200), Id::kDelay, "120 of 714"},
        {delay(1, 4'000'000'001), Id::kDelay, "4000000001 of 712"},
        {schedule("{night}"), Id::kSchedule, "Night"},
        {schedule("Night"), Id::kSchedule, "Night"},
        {schedule("{nameless}"), Id::kSchedule, "{nameless}"},
        {schedule("{Default}"), Id::kSchedule, "All Days, All Day"},
        {schedule("{gone}"), Id::kSchedule, "{gone}"},
        {content(1), Id::kContent, ""},
        {content(3), Id::kContent, "Chime"},
        {content(4), Id::kContent, text(IDS_CONTENT_ON_SERVER)},
        {content(5), Id::kContent, "a.txml"},
        {content(6), Id::kContent, text(IDS_CONTENT_ON_SERVER)},
        {[](EventRecord& r) { r.responseType = 3, r.messageKey = "{gone}"; }, Id::kContent, "{gone}"},
        {[](EventRecord& r) { r.responseType = 4, r.fileGuid = ""; }, Id::kContent, ""},
        {[](EventRecord& r) { r.name = "a"; }, Id::kProblem, "Problem of a"},
    };
    for (const auto& each : cases) {
        EventRecord record;
        each.change(record);
        EXPECT_EQ(cell(record, static_cast<std::size_t>(each.column)), each.text) << (&each - cases);
    }
}

struct Rows final : ListSource {
    std::size_t size() const override { return names.size(); }
    std::string cell(std::size_t row, std::size_t column) const override { return names[row] + std::to_string(column); }
    std::vector<std::string> names;
};

TEST(ShownRowsTest, OnlyVisibleRowsThatLookDifferentArePaintedAgain) {
    Rows rows;
    for (const char* name : {"a", "b", "c", "d", "e"})
        rows.names.emplace_back(name);
    ShownRows shown;
    using Changed = std::vector<std::size_t>;
    const auto changed = [&](std::size_t first) {
        const ShownRows::Changes changes = shown.update(rows, first, 3, {0, 1});
        return changes.all ? Changed{99} : changes.rows;
    };
    EXPECT_EQ(changed(0), (Changed{0, 1, 2}));
    EXPECT_EQ(changed(0), Changed());
    rows.names[1] = "B";
    rows.names[4] = "not visible";
    EXPECT_EQ(changed(0), Changed{1});
    EXPECT_EQ(changed(2), Changed{99}) << "scrolled";
    rows.names.emplace_back("f");
    EXPECT_EQ(changed(2), Changed()) << "rows that come below are not seen";
    rows.names.pop_back();
    EXPECT_EQ(changed(2), Changed{99}) << "rows have gone";
    rows.names.clear();
    EXPECT_EQ(changed(0), Changed{99});
}

}  // namespace
}  // namespace orvc
