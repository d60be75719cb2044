#include "lists/schedule_table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

std::string upperCase(std::string_view name) {
    std::string key(name);
    std::ranges::transform(key, key.begin(), [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
    return key;
}

ScheduleRecord record(std::optional<std::string> key, std::optional<std::string> name,
                      std::optional<WeekMask> hours = WeekMask{}) {
    static std::uint32_t lastId = 0;
    ScheduleRecord made;
    made.id = ++lastId;
    made.key = std::move(key);
    made.name = std::move(name);
    made.hours = hours;
    return made;
}

ScheduleRecord builtIn() {
    return record("{Default}", "All Days, All Day", WeekMask::everySlot());
}

class ScheduleTableTest : public testing::Test {
  protected:
    std::string keys() const {
        std::string text;
        for (std::size_t row = 0; row < rows_.size(); ++row)
            text += rows_.at(row).key + " ";
        return text;
    }

    FakeStringTable strings_;
    ScheduleTable rows_{strings_, upperCase};
};

TEST_F(ScheduleTableTest, ListsWhatHasANameAndAMaskByNameAndKeyUnderTheBuiltInOne) {
    EXPECT_TRUE(
        rows_.fill({record("k1", "nights"), record("K2", "Nights"), record("a", "Weekends"), record("x", std::nullopt),
                    record("y", "No mask", std::nullopt), record(std::nullopt, "No key"), builtIn(),
                    record("b", "LATE"), record("c", "late"), record("e", ""), record("B", "Late")}));
    EXPECT_EQ(keys(), "{Default} e B b c K2 k1 a ");
    // The built-in one is listed whatever it lacks.
    rows_.fill({record("a", "Weekends"), record("{Default}", std::nullopt, std::nullopt)});
    EXPECT_EQ(keys(), "{Default} a ");
}

TEST_F(ScheduleTableTest, SummariesTellDaysDownToTheirLastSlotAndThatThereAreNone) {
    strings_.texts = {{IDS_NO_DAYS, "No"}, {IDS_VARIABLE_TIMES, "Var"}};
    WeekMask lastSlots;
    lastSlots.set(0, 47);
    lastSlots.set(6, 47);
    rows_.fill({builtIn(), record("a", "A", WeekMask{}), record("b", "B", lastSlots)});
    EXPECT_EQ(rows_.at(1).days + rows_.at(1).times, "NoVar");
    EXPECT_EQ(rows_.at(2).days + rows_.at(2).times, "Su Sa Var");
}

TEST_F(ScheduleTableTest, TheSelectionFollowsItsScheduleAndEndsWithIt) {
    const ScheduleRecord first = builtIn();
    const ScheduleRecord a = record("a", "A");
    const ScheduleRecord b = record("b", "B");
    rows_.fill({first, a, b});
    rows_.select(1);
    EXPECT_FALSE(rows_.fill({b, first, a}));
    ScheduleRecord renamed = a;
    renamed.name = "Z";
    EXPECT_TRUE(rows_.fill({first, renamed, b}));
    EXPECT_EQ(rows_.selectedRow(), 2u);
    EXPECT_TRUE(rows_.fill({first}));
    EXPECT_EQ(rows_.selectedRow(), std::nullopt);
    // It does not come back with another record of the same key.
    rows_.fill({first, record("a", "A")});
    EXPECT_EQ(rows_.selectedRow(), std::nullopt);
}

TEST_F(ScheduleTableTest, ARemovedRowStaysAwayWhateverArrivesForIt) {
    const ScheduleRecord first = builtIn();
    ScheduleRecord a = record("a", "A");
    const ScheduleRecord sameKey = record("a", "B");
    rows_.fill({first, a, sameKey});
    rows_.select(1);
    rows_.removeSelected();
    EXPECT_EQ(keys(), "{Default} a ");
    EXPECT_EQ(rows_.at(1).name, "B") << "the other one with that key stays";
    EXPECT_EQ(rows_.selectedId(), std::nullopt);
    rows_.removeSelected();
    a.name = "A again";
    rows_.fill({first, a, sameKey, record("c", "C")});
    EXPECT_EQ(keys(), "{Default} a c ");
}

}  // namespace
}  // namespace orvc
