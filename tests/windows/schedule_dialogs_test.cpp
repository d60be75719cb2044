#include <windows.h>

#include <commctrl.h>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using Row = std::vector<std::string>;

constexpr unsigned kStart = IDC_SCHEDULE_TIME, kEnd = kStart + 3;  // of the first period: hour, minute, half of the day

class ScheduleDialogsTest : public ConsoleTest {
  protected:
    void openList() {
        list_ = console_.open(IDM_SCHEDULES, IDC_SCHEDULE_LIST);
        ASSERT_NE(list_, nullptr);
        ASSERT_TRUE(waitForCount(6));
    }
    bool waitForCount(std::size_t count) {
        return ConsoleDriver::waitUntil([&] { return rows().size() == count; });
    }
    void logOnAndOpenList(const std::string& options = {}) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        openList();
    }
    std::vector<Row> rows() { return console_.readRows(list_, IDC_SCHEDULE_LIST, 3); }
    std::string buttons() {
        std::string enabled;
        for (const unsigned id : {IDC_SCHEDULE_NEW, IDC_SCHEDULE_MODIFY, IDC_SCHEDULE_DELETE})
            if (ConsoleDriver::isEnabled(list_, id)) enabled += ConsoleDriver::textOf(list_, id) + " ";
        return enabled;
    }
    // Clicks a row and waits for what the buttons say about it.
    void clickRow(int row, const std::string& expected) {
        console_.clickRow(list_, IDC_SCHEDULE_LIST, row);
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return buttons() == expected; })) << row;
    }
    void waitForEditor() {
        editor_ = console_.waitForWindowWith(IDC_SCHEDULE_DAY_TABS);
        ASSERT_NE(editor_, nullptr);
    }
    // "09:30 AM"; an empty text for a list in which nothing is selected.
    std::string time(unsigned hourList) {
        return ConsoleDriver::selectedEntry(editor_, hourList) + ":" +
               ConsoleDriver::selectedEntry(editor_, hourList + 1) + " " +
               ConsoleDriver::selectedEntry(editor_, hourList + 2);
    }
    bool isShown(int day) {
        return SendMessageA(GetDlgItem(editor_, IDC_SCHEDULE_DAY_TABS), TCM_GETCURSEL, 0, 0) == day;
    }
    std::vector<std::string> writes() const {
        std::vector<std::string> calls = tracedCalls();
        std::erase_if(calls, [](const std::string& call) { return !call.starts_with("KSSysVarSetValue"); });
        return calls;
    }

    HWND list_ = nullptr;
    HWND editor_ = nullptr;
};

TEST_F(ScheduleDialogsTest, ListsEveryScheduleProtectsTheBuiltInOneAndDeletesOnlyRows) {
    logOnAndOpenList();
    EXPECT_EQ(rows(), (std::vector<Row>{{"All Days, All Day", "Every Day", "All Day"},
                                        {"Around the clock", "Every Day", "All Day"},
                                        {"Nights", "Every Day", "Variable"},
                                        {"Office hours", "Mo Tu We Th Fr ", "Variable"},
                                        {"Visiting hours", "Every Day", "Variable"},
                                        {"Weekends", "Su Sa ", "Variable"}}));
    EXPECT_EQ(buttons(), "New ");
    clickRow(2, "New Modify Delete ");
    clickRow(0, "New ");
    console_.doubleClickRow(list_, IDC_SCHEDULE_LIST, 0);
    EXPECT_EQ(console_.waitForWindowWith(IDC_SCHEDULE_DAY_TABS, 300), nullptr);
    clickRow(2, "New Modify Delete ");
    ConsoleDriver::click(list_, IDC_SCHEDULE_DELETE);
    ASSERT_TRUE(waitForCount(5));
    EXPECT_EQ(rows()[2][0], "Office hours");
    EXPECT_EQ(buttons(), "New ");
    EXPECT_FALSE(IsWindowEnabled(console_.mainWindow()));
    ConsoleDriver::click(list_, IDOK);
    ASSERT_TRUE(console_.waitUntilGone(list_));
    EXPECT_TRUE(IsWindowEnabled(console_.mainWindow()));
    openList();
    EXPECT_TRUE(writes().empty());
    EXPECT_TRUE(tracedCallsFrom("KSSysVarCreateKey \\ORVS\\Schedules").empty());
}

TEST_F(ScheduleDialogsTest, AnOpenListFollowsAServerStopAndTheNextLogon) {
    logOnAndOpenList("stop-once=3");
    ASSERT_NE(console_.logonDialog(), nullptr);
    EXPECT_TRUE(waitForCount(1)) << "the built-in one";
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_TRUE(waitForCount(6));
}

TEST_F(ScheduleDialogsTest, ANewScheduleNeedsANameHasNoTimesAndIsOfferedInTheEventEditor) {
    logOnAndOpenList();
    ConsoleDriver::click(list_, IDOK);
    ASSERT_TRUE(console_.waitUntilGone(list_));
    const HWND event = console_.open(IDM_CREATE_EVENT, IDC_EVENT_SCHEDULES);
    ConsoleDriver::click(event, IDC_EVENT_SCHEDULES);
    ASSERT_NE(list_ = console_.waitForWindowWith(IDC_SCHEDULE_LIST), nullptr);
    ConsoleDriver::click(list_, IDC_SCHEDULE_NEW);
    waitForEditor();
    EXPECT_EQ(ConsoleDriver::textOf(editor_, IDC_SCHEDULE_NAME), "");
    EXPECT_FALSE(ConsoleDriver::isEnabled(editor_, IDOK));
    for (unsigned list = kStart; list < kStart + 18; list += 3) {
        EXPECT_EQ(time(list), "None:00 AM");
        EXPECT_FALSE(ConsoleDriver::isEnabled(editor_, list + 1) || ConsoleDriver::isEnabled(editor_, list + 2));
    }
    ConsoleDriver::type(editor_, IDC_SCHEDULE_NAME, "x");
    EXPECT_TRUE(ConsoleDriver::isEnabled(editor_, IDOK));
    for (const HWND dialog : {editor_, list_}) {
        ConsoleDriver::click(dialog, IDOK);
        ASSERT_TRUE(console_.waitUntilGone(dialog));
    }
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] {
        return SendDlgItemMessageA(event, IDC_EVENT_SCHEDULE, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                   reinterpret_cast<LPARAM>("x")) >= 0;
    }));
}

TEST_F(ScheduleDialogsTest, AWholeDayEndsAtAMidnightThatHasToBeChosenAgain) {
    logOnAndOpenList();
    console_.doubleClickRow(list_, IDC_SCHEDULE_LIST, 1);
    waitForEditor();
    EXPECT_EQ(time(kStart), "12:00 AM");
    EXPECT_EQ(time(kEnd), "12:00 ");
    EXPECT_EQ(ConsoleDriver::textOf(editor_, IDC_SCHEDULE_NAME), "");
    EXPECT_FALSE(ConsoleDriver::isEnabled(editor_, IDOK));
    // The list of days does what the tabs do, though it is hidden.
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor_, IDC_SCHEDULE_DAY_LIST, "Saturday"));
    expectMessage("End time must be after Start Time");
    EXPECT_TRUE(isShown(0));
    EXPECT_EQ(ConsoleDriver::selectedEntry(editor_, IDC_SCHEDULE_DAY_LIST), "Sunday");
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor_, kEnd + 2, "AM"));
    console_.clickTab(editor_, IDC_SCHEDULE_DAY_TABS, 6);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return isShown(6); }));
    EXPECT_EQ(ConsoleDriver::selectedEntry(editor_, IDC_SCHEDULE_DAY_LIST), "Saturday");
    // What the click started has ended when the dialog answers.
    SendMessageA(editor_, WM_NULL, 0, 0);
    EXPECT_EQ(time(kEnd), "12:00 ");
    // Save tells it too, and closes all the same.
    ConsoleDriver::type(editor_, IDC_SCHEDULE_NAME, "Always");
    ConsoleDriver::click(editor_, IDOK);
    expectMessage("End time must be after Start Time");
    ASSERT_TRUE(console_.waitUntilGone(editor_));
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return writes().size() == 4; }));
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return rows()[1] == Row{"Always", "Every Day", "All Day"}; }));
    const std::string path = writes()[0].substr(0, writes()[0].find("\\Name ") + 1);
    const std::string key = path.substr(path.find('{'), 38);
    EXPECT_EQ(path, "KSSysVarSetValue \\ORVS\\Schedules\\" + key + "\\");
    EXPECT_EQ(writes(), (std::vector<std::string>{path + "Name 0xC0000001 \"Always\" 6",
                                                  path + "Key 0xC0000001 \"" + key + "\" 38",
                                                  path + "Hours 0xC0000001 \"" + std::string(84, 'f') + "\" 84",
                                                  path + "CompleteBits 0xC0000004 1 4"}));
}

}  // namespace
}  // namespace orvc::test
