#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class SessionWindowTest : public ConsoleTest {};

TEST_F(SessionWindowTest, TheTrayHidesAndShowsTheWindowAndForgedMessagesDoNothing) {
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
