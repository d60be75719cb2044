#include <windows.h>

#include <algorithm>

#include "windows/console_fixture.h"
#include "windows/menu_state.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using driver::EventRow;

class EventListTest : public ConsoleTest {
  protected:
    void deleteSelected(unsigned answer) {
        const HWND box = console_.openMessageBox(IDM_DELETE_EVENT);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(ConsoleDriver::messageText(box), "Delete Event, Are you sure?");
        EXPECT_EQ(ConsoleDriver::textOf(box), "Delete Event?");
        ConsoleDriver::click(box, answer);
        ASSERT_TRUE(console_.waitUntilGone(box));
    }
    bool waitForCount(std::size_t count) {
        return ConsoleDriver::waitUntil([&] { return console_.eventCount() == count; });
    }
    HWND list() { return GetDlgItem(console_.mainWindow(), IDC_EVENT_LIST); }
    void press(WPARAM key) { PostMessageA(list(), WM_KEYDOWN, key, 0); }
    // How many of the commands that change something the menu offers.
    int offered() {
        return static_cast<int>(std::ranges::count_if(
            kEditing, [&](unsigned command) { return (menuState(console_, command) & MF_GRAYED) == 0; }));
    }
    // Neither the menu nor a gesture changes anything now.
    void expectNoEditing(const char* when) {
        console_.selectRow(2);
        for (const unsigned command : kEditing)
            console_.choose(command);
        for (const WPARAM key : {VK_INSERT, VK_RETURN, VK_DELETE})
            press(key);
        console_.doubleClickRow(console_.mainWindow(), IDC_EVENT_LIST, 2);
        EXPECT_FALSE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(console_.mainWindow()) == 0; }, 300))
            << "a window opened " << when;
        EXPECT_EQ(offered(), 0) << when;
    }

    static constexpr unsigned kEditing[] = {IDM_CREATE_EVENT, IDM_MODIFY_EVENT, IDM_DELETE_EVENT, IDM_SCHEDULES,
                                            IDM_PREFERENCES};
};

TEST_F(EventListTest, ShowsEveryEventInOrderWithItsState) {
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_EQ(console_.columnTitles(), (EventRow{"Event Name", "Status", "Last Event", "Resp"}));
    const std::vector<EventRow> rows = console_.readEvents();
    EXPECT_TRUE(std::ranges::is_sorted(rows, [](const EventRow& a, const EventRow& b) {
        return CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a[0].c_str(), -1, b[0].c_str(), -1) ==
               CSTR_LESS_THAN;
    }));
    const auto countOf = [&](std::size_t column, const std::string& text) {
        return std::ranges::count_if(rows, [&](const EventRow& row) { return row[column] == text; });
    };
    EXPECT_EQ(countOf(1, "Disabled"), 1);
    EXPECT_EQ(countOf(1, "Error - Fix Event"), 1);
    EXPECT_EQ(countOf(1, "Available"), 18);
    EXPECT_GT(countOf(2, "Never"), 0);
    // A letter finds the next Event that begins with it, in either case.
    SendMessageA(list(), WM_CHAR, 'L', 1);
    EXPECT_EQ(console_.selectedRow(), console_.rowOf("lift alarm"));
}

TEST_F(EventListTest, NothingCanBeChangedBeforeTheSettingsAreThereAndWhileTheyReload) {
    startConsole("late-members=400;stop-once=2;incomplete=1;reload-after=8;resend=values");
    ASSERT_NE(console_.logonDialog(), nullptr);
    console_.enterLogon("admin", "admin");
    ASSERT_TRUE(ConsoleDriver::waitUntil(
        [&] { return ConsoleDriver::textOf(console_.mainWindow()).ends_with("Logon ID admin"); }));
    expectNoEditing("before the groups' members were there");
    // The server stops meanwhile.
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    expectNoEditing("before the settings were complete");
    ASSERT_NE(console_.waitForWindowWith(IDC_WAIT_TEXT), nullptr);
    expectNoEditing("while the settings were sent again");
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return offered() == static_cast<int>(std::size(kEditing)); }));
    press(VK_DELETE);
    const HWND box = console_.waitForMessageBox();
    ConsoleDriver::click(box, IDNO);
    ASSERT_TRUE(console_.waitUntilGone(box));
    for (const auto& [key, title] : {std::pair(VK_INSERT, "Create Event"), {VK_RETURN, "Modify Event"}}) {
        press(static_cast<WPARAM>(key));
        const HWND editor = console_.waitForWindowWith(IDC_EVENT_TRIGGER);
        EXPECT_EQ(ConsoleDriver::textOf(editor), title);
        ConsoleDriver::click(editor, IDCANCEL);
        ASSERT_TRUE(console_.waitUntilGone(editor));
    }
}

TEST_F(EventListTest, DeletesTheSelectedEventOnYesOnly) {
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    const int row = console_.rowOf("Pharmacy after hours");  // sends an e-mail: it has a payload file
    ASSERT_GE(row, 0);
    const std::string next = console_.readEvents()[static_cast<std::size_t>(row) + 1][0];
    console_.selectRow(row);
    deleteSelected(IDNO);
    EXPECT_EQ(console_.eventCount(), kBuildingEvents);
    deleteSelected(IDYES);
    ASSERT_TRUE(waitForCount(kBuildingEvents - 1));
    EXPECT_EQ(console_.rowOf("Pharmacy after hours"), -1);
    EXPECT_EQ(console_.selectedRow(), row);
    EXPECT_EQ(console_.rowOf(next), row);
    // The payload file goes first, then the key and all beneath.
    const std::vector<std::string> calls = tracedCallsFrom("KSFileDelete");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_TRUE(calls[1].starts_with("KSSysVarCreateKey \\ORVS\\Events\\{")) << calls[1];
    EXPECT_TRUE(calls[1].ends_with("}\\ 0x80000000 0")) << calls[1];
}

TEST_F(EventListTest, SelectionStaysWithAFiringFollowsADeletedLastRowAndEndsWithTheList) {
    startConsole("events=3;fire=200");
    ASSERT_TRUE(console_.logOn(3));
    console_.choose(IDM_DELETE_EVENT);  // nothing is selected: nothing happens
    EXPECT_EQ(console_.waitForMessageBox(300), nullptr);
    console_.selectRow(2);
    const std::vector<EventRow> before = console_.readEvents();
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.readEvents() != before; }));
    EXPECT_EQ(console_.selectedRow(), 2);
    for (int left = 2; left >= 0; --left) {
        deleteSelected(IDYES);
        ASSERT_TRUE(waitForCount(static_cast<std::size_t>(left)));
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.selectedRow() == left - 1; })) << left;
    }
}

TEST_F(EventListTest, ColumnsFillTheWindowAndItsLeastSizeShowsTheirTitles) {
    setInteger("startWidth", 900);
    setInteger("startHeight", 500);
    startConsole("events=100");  // more than the window has room for
    ASSERT_TRUE(console_.logOn(100));
    const HWND window = console_.mainWindow();
    RECT size{};
    GetWindowRect(window, &size);
    EXPECT_EQ(size.right - size.left, 900);
    EXPECT_EQ(size.bottom - size.top, 500);
    RECT client{};
    const HWND list = GetDlgItem(window, IDC_EVENT_LIST);
    GetClientRect(list, &client);
    EXPECT_EQ(GetWindowLongA(list, GWL_STYLE) & (WS_VSCROLL | WS_HSCROLL), WS_VSCROLL);
    int width = 0;
    for (int column = 0; column < 4; ++column)
        width += console_.columnWidth(column);
    EXPECT_EQ(width, client.right);
    SetWindowPos(window, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
    GetWindowRect(window, &size);
    EXPECT_GT(size.right - size.left, 200);
    EXPECT_GT(size.bottom - size.top, 200);
    exitConsole();
    EXPECT_EQ(integer("startWidth"), static_cast<unsigned>(size.right - size.left));
}

}  // namespace
}  // namespace orvc::test
