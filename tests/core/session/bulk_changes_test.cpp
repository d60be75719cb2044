#include "session/bulk_changes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

TEST(BulkChanges, OnlyWhatIsNotAsWantedIsWritten) {
    EventRecord on;
    on.disabled = 0;
    on.scheduleKey = "{nights}";
    EventRecord off;
    off.disabled = 1;
    EventRecord unknown;  // counts as disabled
    const EventRecords all{&on, &off, &unknown};

    const auto disable = changesToDisable(all, true);
    ASSERT_EQ(disable.size(), 1u);
    const auto& change = std::get<EventChange>(disable.front());
    EXPECT_EQ(std::tuple(change.before->disabled, change.after->disabled, change.onlyField),
              std::tuple(0u, 1u, "Disabled"));
    const auto enable = changesToDisable(all, false);
    ASSERT_EQ(enable.size(), 2u);
    EXPECT_EQ(std::get<EventChange>(enable.back()).after->disabled, 0u);

    const auto assign = changesToAssignSchedule(all, "{nights}");
    ASSERT_EQ(assign.size(), 2u);
    EXPECT_EQ(std::get<EventChange>(assign.front()).after->scheduleKey, "{nights}");
    EXPECT_EQ(std::get<EventChange>(assign.front()).onlyField, "ScheduleKey");
    EXPECT_EQ(changesToDelete(all).size(), 3u);
    EXPECT_FALSE(std::get<EventChange>(changesToDelete(all).front()).after.has_value());
}

TEST(BulkChanges, ACopyIsDisabledAndSharesNoFile) {
    EventRecord original;
    original.key = "{E}";
    original.name = "Gong";
    original.fileGuid = "{file}";
    original.lastTriggered = 7;
    original.disabled = 0;
    original.badData = 1;
    const EventChange change =
        changeToDuplicate(original, "{N}", "Copy of Gong", {PayloadKind::kSpokenText, "the text"});
    EXPECT_FALSE(change.before.has_value());
    const EventRecord& copy = *change.after;
    EXPECT_EQ(std::tuple(copy.key, copy.name, copy.disabled, copy.lastTriggered),
              std::tuple("{N}", "Copy of Gong", 1u, 0u));
    EXPECT_FALSE(copy.fileGuid || copy.badData);
    EXPECT_EQ(change.payload.bytes, "the text");

    FakeStringTable strings;
    strings.texts = {{IDS_COPY_NAME, "Copy of %s"}, {IDS_COPY_NAME_NUMBERED, "Copy (%d) of %s"}};
    std::vector<std::string> taken;
    const auto name = [&] {
        return nameOfCopy(strings, "Gong", [&](const auto& n) { return std::ranges::find(taken, n) != taken.end(); });
    };
    for (const char* expected : {"Copy of Gong", "Copy (2) of Gong", "Copy (3) of Gong"}) {
        EXPECT_EQ(name(), expected);
        taken.emplace_back(expected);
    }
}

}  // namespace
}  // namespace orvc
