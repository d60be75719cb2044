#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class LogonTest : public ConsoleTest {};

TEST_F(LogonTest, ListsTheInstallationAfterALogonWithTypedFields) {
    // Values of the wrong type count as absent.
    for (const char* name : {"IPPort", "recordEvents"})
        setText(name, "text");
    for (const char* name : {"IPAddress", "UserName"})
        setInteger(name, 7);
    startConsole();
    const HWND dialog = console_.logonDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ConsoleDriver::textOf(dialog), "Logon Required");
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_ADDRESS), "0.0.0.0");
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_PORT), "3010");
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_ID), "");
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_LOGON_ADDRESS)));
    ConsoleDriver::click(dialog, IDC_LOGON_OPTIONS);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(GetDlgItem(dialog, IDC_LOGON_ADDRESS)) != 0; }));
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_OPTIONS), "<< Options");
    ConsoleDriver::type(dialog, IDC_LOGON_PORT, "4711");
    console_.enterLogon("admin", "admin");
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents; }));
    EXPECT_EQ(ConsoleDriver::textOf(console_.mainWindow()),
              "Orvane VANTE Event Configuration Console - Logon ID admin");
    exitConsole();
    EXPECT_EQ(text("IPAddress"), "127.0.0.1");
    EXPECT_EQ(integer("IPPort"), 4711u);
    EXPECT_EQ(text("UserName"), "");  // the box was not ticked
    EXPECT_EQ(text("UserPassword"), "");
}

TEST_F(LogonTest, FirstFailureCountsDownSilentlyAndTheSecondIsTold) {
    startConsole("refuse=-30,-30");
    const HWND dialog = console_.logonDialog();
    ASSERT_NE(dialog, nullptr);
    const auto waitForTitle = [&](const std::string& title) {
        return ConsoleDriver::waitUntil([&] { return ConsoleDriver::textOf(dialog) == title; });
    };
    console_.enterLogon("admin", "wrong");
    ASSERT_TRUE(waitForTitle("Waiting for Login Retry 9"));
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    for (const int id :
         {IDC_LOGON_ID, IDC_LOGON_PASSWORD, IDC_LOGON_SAVE, IDOK, IDC_LOGON_OPTIONS, IDC_LOGON_ADDRESS, IDC_LOGON_PORT})
        EXPECT_FALSE(ConsoleDriver::isEnabled(dialog, static_cast<unsigned>(id))) << id;

    // Cancel ends the countdown first, and the console when nothing runs.
    ConsoleDriver::click(dialog, IDCANCEL);
    ASSERT_TRUE(waitForTitle("Logon Required"));
    ConsoleDriver::click(dialog, IDOK);
    expectMessage("Logon Name and/or Password invalid");
    ConsoleDriver::click(dialog, IDCANCEL);
    EXPECT_TRUE(console_.waitForEnd());
}

TEST_F(LogonTest, SavedCredentialsLogOnByThemselvesAtStartAndAfterAServerStopButNotAfterALogoff) {
    setText("UserName", "admin");
    setText("UserPassword", "admin");
    setText("IPAddress", "127.0.0.1");
    setInteger("recordEvents", 1);
    startConsole("stop-once=2");
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return logHas("Event:Stop. Console disconnected from server"); }));
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents; }));
    console_.choose(IDM_LOGOFF);
    const HWND dialog = console_.logonDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(console_.eventCount(), 0u);
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_ID), "admin");
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_LOGON_SAVE), static_cast<UINT>(BST_CHECKED));
    Sleep(600);  // two ticks of the logon timer
    EXPECT_TRUE(IsWindow(dialog));
    EXPECT_EQ(ConsoleDriver::textOf(dialog), "Logon Required");
    ConsoleDriver::click(dialog, IDCANCEL);
    ASSERT_TRUE(console_.waitForEnd());
    // A cancelled dialog leaves what was stored.
    EXPECT_EQ(text("UserName"), "admin");
    EXPECT_EQ(text("UserPassword"), "admin");
}

}  // namespace
}  // namespace orvc::test
