#include <algorithm>

#include "windows/console_fixture.h"

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

TEST_F(EventListTest, TheTrayHidesAndShowsTheWindowAndForgedMessagesDoNothing) {
    setInteger("hideMinimized", 1);
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    const HWND window = console_.mainWindow();
    ShowWindow(window, SW_MINIMIZE);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(window) == 0; }));
    PostMessageA(window, 0x1400, 0x1400, WM_LBUTTONUP);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(window) != 0 && IsIconic(window) == 0; }));
    for (UINT message = 0x1401; message <= 0x1410; ++message) {
        PostMessageA(window, message, 1, 0x1234);
        SendMessageA(window, message, 1, 0x1234);
    }
    EXPECT_EQ(console_.eventCount(), kBuildingEvents);
    EXPECT_TRUE(console_.isRunning());
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
