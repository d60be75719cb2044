#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using Row = std::vector<std::string>;

enum Time { kStart1, kEnd1, kStart2, kEnd2, kStart3, kEnd3 };

constexpr unsigned hourList(int time) {
    return IDC_SCHEDULE_TIME + static_cast<unsigned>(3 * time);
}

class ScheduleDialogsTest : public ConsoleTest {
  protected:
    void openList(const std::string& options = {}) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return traceHas("KSSysVarSubscribe"); }));
        reopenList();
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return rows().size() == 6; }));
    }
    void reopenList() {
        console_.choose(IDM_SCHEDULES);
        list_ = console_.waitForWindowWith(IDC_SCHEDULE_LIST);
        ASSERT_NE(list_, nullptr);
    }
    void closeList() {
        ConsoleDriver::click(list_, IDOK);
        ASSERT_TRUE(console_.waitUntilGone(list_));
    }
    std::vector<Row> rows() { return console_.readRows(list_, IDC_SCHEDULE_LIST, 3); }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const Row& row : rows())
            names.push_back(row[0]);
        return names;
    }
    // Clicks a row and waits for what the buttons say about it.
    void clickRow(int row, bool selects) {
        console_.clickRow(list_, IDC_SCHEDULE_LIST, row);
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return buttons() == (selects ? "New Modify Delete " : "New "); }))
            << row;
    }
    std::string buttons() {
        std::string enabled;
        for (const unsigned id : {IDC_SCHEDULE_NEW, IDC_SCHEDULE_MODIFY, IDC_SCHEDULE_DELETE})
            if (ConsoleDriver::isEnabled(list_, id)) enabled += ConsoleDriver::textOf(list_, id) + " ";
        return enabled;
    }

    void waitForEditor() {
        editor_ = console_.waitForWindowWith(IDC_SCHEDULE_DAY_TABS);
        ASSERT_NE(editor_, nullptr);
    }
    void saveEditor() {
        ConsoleDriver::click(editor_, IDOK);
        waitForList();
    }
    // What the editor was closed with has been done when the list's dialog answers.
    void waitForList() {
        ASSERT_TRUE(console_.waitUntilGone(editor_));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(list_) != 0; }));
        SendMessageA(list_, WM_NULL, 0, 0);
    }
    // "09:30 AM"; an empty text for a list in which nothing is selected.
    std::string time(int time) {
        const unsigned list = hourList(time);
        return ConsoleDriver::selectedEntry(editor_, list) + ":" + ConsoleDriver::selectedEntry(editor_, list + 1) +
               " " + ConsoleDriver::selectedEntry(editor_, list + 2);
    }
    bool isDetailEnabled(int time) {
        return ConsoleDriver::isEnabled(editor_, hourList(time) + 1) &&
               ConsoleDriver::isEnabled(editor_, hourList(time) + 2);
    }
    void setTime(int time, const std::string& hour, const std::string& minute, const std::string& half) {
        const unsigned list = hourList(time);
        ASSERT_TRUE(ConsoleDriver::chooseEntry(editor_, list, hour));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return isDetailEnabled(time); }));
        ASSERT_TRUE(ConsoleDriver::chooseEntry(editor_, list + 1, minute));
        ASSERT_TRUE(ConsoleDriver::chooseEntry(editor_, list + 2, half));
    }
    int shownDay() {
        return static_cast<int>(SendMessageA(GetDlgItem(editor_, IDC_SCHEDULE_DAY_TABS), TCM_GETCURSEL, 0, 0));
    }
    void changeDay(int day) {
        console_.clickTab(editor_, IDC_SCHEDULE_DAY_TABS, day);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return shownDay() == day; }));
        // What the click started has ended when the dialog answers.
        SendMessageA(editor_, WM_NULL, 0, 0);
    }

    std::vector<std::string> writes() const {
        std::vector<std::string> calls = tracedCalls();
        std::erase_if(calls, [](const std::string& call) { return !call.starts_with("KSSysVarSetValue"); });
        return calls;
    }
    bool traceHas(const std::string& prefix) const {
        return std::ranges::any_of(tracedCalls(), [&](const std::string& call) { return call.starts_with(prefix); });
    }

    HWND list_ = nullptr;
    HWND editor_ = nullptr;
};

// The four writes of one Schedule under a key of the GUID form; `hours` without the zeros at its end.
void expectWritten(const std::vector<std::string>& writes, const std::string& name, std::string hours) {
    ASSERT_EQ(writes.size(), 4u);
    const std::string path = writes[0].substr(0, writes[0].find("\\Name ") + 1);
    const std::string key = path.substr(path.find('{'), 38);
    EXPECT_EQ(path, "KSSysVarSetValue \\ORVS\\Schedules\\" + key + "\\");
    hours.resize(84, '0');
    EXPECT_EQ(writes[0], path + "Name 0xC0000001 \"" + name + "\" " + std::to_string(name.size()));
    EXPECT_EQ(writes[1], path + "Key 0xC0000001 \"" + key + "\" 38");
    EXPECT_EQ(writes[2], path + "Hours 0xC0000001 \"" + hours + "\" 84");
    EXPECT_EQ(writes[3], path + "CompleteBits 0xC0000004 1 4");
}

TEST_F(ScheduleDialogsTest, ListsEverySchedulesDaysAndTimesAndProtectsTheBuiltInOne) {
    openList();
    EXPECT_EQ(rows(), (std::vector<Row>{{"All Days, All Day", "Every Day", "All Day"},
                                        {"Around the clock", "Every Day", "All Day"},
                                        {"Nights", "Every Day", "Variable"},
                                        {"Office hours", "Mo Tu We Th Fr ", "Variable"},
                                        {"Visiting hours", "Every Day", "Variable"},
                                        {"Weekends", "Su Sa ", "Variable"}}));
    EXPECT_EQ(buttons(), "New ");
    clickRow(2, true);
    clickRow(0, false);
    console_.doubleClickRow(list_, IDC_SCHEDULE_LIST, 0);
    EXPECT_EQ(console_.waitForWindowWith(IDC_SCHEDULE_DAY_TABS, 300), nullptr);
    EXPECT_EQ(buttons(), "New ");
    EXPECT_FALSE(IsWindowEnabled(console_.mainWindow()));
    closeList();
    EXPECT_TRUE(IsWindowEnabled(console_.mainWindow()));
    exitConsole();
}

TEST_F(ScheduleDialogsTest, ANewScheduleIsWrittenAndListedByItsName) {
    openList();
    ConsoleDriver::click(list_, IDC_SCHEDULE_NEW);
    waitForEditor();
    EXPECT_EQ(ConsoleDriver::textOf(editor_, IDC_SCHEDULE_NAME), "");
    EXPECT_FALSE(ConsoleDriver::isEnabled(editor_, IDOK));
    for (int t = kStart1; t <= kEnd3; ++t) {
        EXPECT_EQ(time(t), "None:00 AM") << t;
        EXPECT_FALSE(isDetailEnabled(t)) << t;
    }
    ConsoleDriver::type(editor_, IDC_SCHEDULE_NAME, "mornings");
    EXPECT_TRUE(ConsoleDriver::isEnabled(editor_, IDOK));
    setTime(kStart1, "12", "00", "AM");
    setTime(kEnd1, "02", "30", "AM");
    changeDay(1);
    setTime(kStart1, "11", "30", "PM");
    setTime(kEnd1, "12", "00", "AM");
    saveEditor();
    expectWritten(writes(), "mornings", "1f0000000000000000000080");
    closeList();
    exitConsole();

    // The server has it too.
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    reopenList();
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return rows().size() == 7; }));
    EXPECT_EQ(rows()[2], (Row{"mornings", "Su Mo ", "Variable"}));
}

TEST_F(ScheduleDialogsTest, DeleteTakesOnlyTheRowAway) {
    openList();
    clickRow(2, true);
    ConsoleDriver::click(list_, IDC_SCHEDULE_DELETE);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return rows().size() == 5; }));
    EXPECT_EQ(rows()[2][0], "Office hours");
    EXPECT_EQ(buttons(), "New ");
    closeList();
    reopenList();
    EXPECT_EQ(rows().size(), 6u);
    EXPECT_TRUE(writes().empty());
    EXPECT_FALSE(traceHas("KSSysVarCreateKey \\ORVS\\Schedules"));
}

TEST_F(ScheduleDialogsTest, AWholeDayEndsAtAMidnightThatHasToBeChosenAgain) {
    openList();
    console_.doubleClickRow(list_, IDC_SCHEDULE_LIST, 1);
    waitForEditor();
    EXPECT_EQ(time(kStart1), "12:00 AM");
    EXPECT_EQ(time(kEnd1), "12:00 ");
    console_.clickTab(editor_, IDC_SCHEDULE_DAY_TABS, 6);
    expectMessage("End time must be after Start Time");
    EXPECT_EQ(shownDay(), 0);
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor_, hourList(kEnd1) + 2, "AM"));
    changeDay(6);
    EXPECT_EQ(time(kEnd1), "12:00 ");
    // Save tells it too, and closes all the same.
    ConsoleDriver::type(editor_, IDC_SCHEDULE_NAME, "Always");
    ConsoleDriver::click(editor_, IDOK);
    expectMessage("End time must be after Start Time");
    waitForList();
    expectWritten(writes(), "Always", std::string(84, 'f'));
}

}  // namespace
}  // namespace orvc::test
