#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class LoadTest : public ConsoleTest {
  protected:
    // Logs on and waits for the rows; returns the milliseconds from the click to the last row, and the longest time
    // that the window took to answer meanwhile.
    std::pair<DWORD, DWORD> load(int rows) {
        startConsole("events=" + std::to_string(rows));
        const HWND window = console_.mainWindow();
        EXPECT_NE(console_.logonDialog(), nullptr);
        console_.enterLogon("admin", "admin");
        const DWORD start = GetTickCount();
        DWORD longestAnswer = 0;
        const auto isComplete = [&] {
            const DWORD asked = GetTickCount();
            SendMessageA(window, WM_NULL, 0, 0);
            longestAnswer = std::max(longestAnswer, GetTickCount() - asked);
            return SendMessageA(GetDlgItem(window, IDC_EVENT_LIST), LVM_GETITEMCOUNT, 0, 0) == rows;
        };
        EXPECT_TRUE(ConsoleDriver::waitUntil(isComplete, 120'000));
        const DWORD milliseconds = GetTickCount() - start;
        exitConsole();
        return {milliseconds, longestAnswer};
    }
};

TEST_F(LoadTest, LoadsTensOfThousandsOfEventsInLinearTimeAndAnswersMeanwhile) {
    const DWORD small = load(5'000).first;
    const auto [large, longestAnswer] = load(50'000);
    // Ten times the Events, with room for another program's share of the machine.
    EXPECT_LT(large, 20 * std::max<DWORD>(small, 200));
    EXPECT_LT(longestAnswer, 250u);
}

}  // namespace
}  // namespace orvc::test
