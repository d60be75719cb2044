#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class SessionWindowTest : public ConsoleTest {};

TEST_F(SessionWindowTest, AServerStopLogsOnAgainWithSavedCredentials) {
    setText("UserName", "admin");
    setText("UserPassword", "admin");
    setText("IPAddress", "127.0.0.1");
    setInteger("recordEvents", 1);
    startConsole("stop-once=1");
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return logHas("Event:Stop. Console disconnected from server"); }));
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents; }));
}

TEST_F(SessionWindowTest, AReloadShowsThePleaseWaitWindowAndKeepsTheEvents) {
    for (const char* options : {"reload-after=1", "reload-after=1;resend=values"}) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents)) << options;
        const HWND wait = console_.waitForWindowWith(IDC_WAIT_TEXT);
        ASSERT_NE(wait, nullptr) << options;
        EXPECT_EQ(ConsoleDriver::textOf(wait), "Please Wait");
        EXPECT_EQ(ConsoleDriver::textOf(wait, IDC_WAIT_TEXT), "Updating Settings from Server");
        EXPECT_EQ(console_.eventCount(), kBuildingEvents);
        EXPECT_TRUE(console_.waitUntilGone(wait)) << options;
        EXPECT_EQ(console_.eventCount(), kBuildingEvents);
        exitConsole();
    }
}

TEST_F(SessionWindowTest, MinimisingHidesTheWindowIntoTheTrayWhenSetSo) {
    setInteger("hideMinimized", 1);
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    const HWND window = console_.mainWindow();
    ShowWindow(window, SW_MINIMIZE);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(window) == 0; }));
    PostMessageA(window, 0x1400, 0x1400, WM_LBUTTONUP);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(window) != 0 && IsIconic(window) == 0; }));
    exitConsole();
}

TEST_F(SessionWindowTest, ForgedPrivateMessagesDoNothing) {
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    for (UINT message = 0x1401; message <= 0x1410; ++message) {
        PostMessageA(console_.mainWindow(), message, 1, 0x1234);
        SendMessageA(console_.mainWindow(), message, 1, 0x1234);
    }
    EXPECT_EQ(console_.eventCount(), kBuildingEvents);
    EXPECT_TRUE(console_.isRunning());
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
