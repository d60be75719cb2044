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
    struct Load {
        DWORD milliseconds = 0;
        DWORD longestAnswer = 0;
        bool complete = false;
    };
    Load load(std::size_t rows, const std::string& options) {
        startConsole(options);
        const HWND window = console_.mainWindow();
        Load result;
        if (console_.logonDialog() == nullptr) return result;
        const HWND list = GetDlgItem(window, IDC_EVENT_LIST);
        console_.enterLogon("admin", "admin");
        const DWORD start = GetTickCount();
        while (GetTickCount() - start < 120000) {
            const DWORD asked = GetTickCount();
            SendMessageA(window, WM_NULL, 0, 0);
            result.longestAnswer = std::max(result.longestAnswer, GetTickCount() - asked);
            if (static_cast<std::size_t>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0)) == rows) {
                result.complete = true;
                break;
            }
            Sleep(5);
        }
        result.milliseconds = GetTickCount() - start;
        return result;
    }
};

TEST_F(LoadTest, LoadsTensOfThousandsOfEventsInLinearTimeAndAnswersMeanwhile) {
    const Load small = load(5000, "events=5000");
    ASSERT_TRUE(small.complete);
    exitConsole();
    const Load large = load(50000, "events=50000");
    ASSERT_TRUE(large.complete);
    exitConsole();
    // Ten times the Events, with room for another program's share of the machine.
    EXPECT_LT(large.milliseconds, 20 * std::max<DWORD>(small.milliseconds, 200));
    EXPECT_LT(large.longestAnswer, 250u);
}

}  // namespace
}  // namespace orvc::test
