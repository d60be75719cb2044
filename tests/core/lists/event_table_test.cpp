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
