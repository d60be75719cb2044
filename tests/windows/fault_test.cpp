// What goes wrong around the console, and what happens at the wrong moment.
#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

constexpr const char* kRootFile = "c:\\ORVCTracking.txt";

class FaultTest : public ConsoleTest {
  protected:
    void SetUp() override {
        ConsoleTest::SetUp();
        DeleteFileA(kRootFile);
        setInteger("recordEvents", 1);
    }
    void saveCredentials() {
        setText("UserName", "admin");
        setText("UserPassword", "admin");
        setText("IPAddress", "127.0.0.1");
    }
    bool waitForEvents() {
        return ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents; });
    }
    bool waitForSecondLogon() {
        return ConsoleDriver::waitUntil(
            [&] { return std::ranges::count(logLines(), "*** ORVE Events Configuration Console Login ***") == 2; });
    }
    HWND askForDeletion(const std::string& event) {
        console_.selectRow(console_.rowOf(event));
        return console_.openMessageBox(IDM_DELETE_EVENT);
    }
};

TEST_F(FaultTest, AQuestionThatIsOpenWhenTheServerStopsIsAnsweredAfterTheNextLogon) {
    for (const bool byHand : {false, true}) {
        saveCredentials();
        if (byHand) setText("UserName", "");  // nothing is saved: the console waits for the operator
        startConsole("stop-once=2");
        if (byHand) console_.enterLogon("admin", "admin");
        ASSERT_TRUE(waitForEvents());
        const std::string event = console_.readEvents()[3][0];
        const HWND box = askForDeletion(event);
        ASSERT_NE(box, nullptr);
        if (byHand) {
            ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.findWindowWith(IDC_LOGON_ID) != nullptr; }));
            EXPECT_FALSE(IsWindowEnabled(box)) << "the logon comes before it";
            EXPECT_EQ(console_.eventCount(), 0u);
            console_.enterLogon("admin", "admin");
        }
        ASSERT_TRUE(waitForSecondLogon());
        ASSERT_TRUE(waitForEvents());
        ASSERT_TRUE(IsWindow(box) && ConsoleDriver::waitUntil([&] { return IsWindowEnabled(box) != 0; }));
        ConsoleDriver::click(box, IDYES);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents - 1; }));
        EXPECT_EQ(console_.rowOf(event), -1) << "the Event that was asked about";
        exitConsole();
        SetUp();
    }
}

TEST_F(FaultTest, ALateStopAfterALogoffLogsNobodyOn) {
    saveCredentials();
    startConsole("late-stop=1600");
    ASSERT_TRUE(waitForEvents());
    console_.choose(IDM_LOGOFF);
    const HWND dialog = console_.logonDialog();
    ASSERT_NE(dialog, nullptr);
    Sleep(600);
    EXPECT_EQ(ConsoleDriver::textOf(dialog), "Logon Required");
    EXPECT_EQ(console_.eventCount(), 0u);
}

TEST_F(FaultTest, EndsInOrderWithWindowsOpen) {
    for (const bool windowsEnds : {true, false}) {
        startConsole();
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        const HWND main = console_.mainWindow();
        if (windowsEnds) {
            SetWindowPos(main, nullptr, 0, 0, 900, 500, SWP_NOMOVE | SWP_NOZORDER);
            ConsoleDriver::click(console_.open(IDM_CREATE_EVENT, IDC_EVENT_NAME), IDC_EVENT_SCHEDULES);
            ASSERT_NE(console_.waitForWindowWith(IDC_SCHEDULE_LIST), nullptr);
            EXPECT_EQ(SendMessageA(main, WM_QUERYENDSESSION, 0, 0), TRUE);
            SendMessageA(main, WM_ENDSESSION, FALSE, 0);
            EXPECT_FALSE(logHas("doShutdown: Done")) << "somebody else said no";
            SendMessageA(main, WM_ENDSESSION, TRUE, 0);
            // All is done when the message returns: Windows may end the process at once.
            EXPECT_EQ(integer("startWidth"), 900u);
            EXPECT_TRUE(logHas("doShutdown: Done"));
        } else {
            ASSERT_NE(askForDeletion(console_.readEvents()[0][0]), nullptr);
            PostMessageA(main, WM_CLOSE, 0, 0);
        }
        ASSERT_TRUE(console_.waitForEnd());
        EXPECT_EQ(console_.exitCode(), 0u);
        EXPECT_TRUE(std::ranges::none_of(tracedCalls(), [](const std::string& call) {
            return call.starts_with("KSFileDelete") || call.starts_with("KSSysVarCreateKey \\ORVS\\Events\\{");
        })) << "nobody said yes";
    }
}

TEST_F(FaultTest, TheLogGoesToTheRootWhenItsFolderIsGoneOrItsFileIsHeld) {
    const std::string toRoot = "OpenCloseDebugFile: Could not write to special folder, writing to ROOT";
    for (const bool isHeld : {false, true}) {
        setInteger("recordEvents", 0);
        startConsole();
        ASSERT_NE(console_.logonDialog(), nullptr);
        HANDLE holder = INVALID_HANDLE_VALUE;
        if (isHeld)
            holder = CreateFileA(trackingFile().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        else
            std::filesystem::remove_all(supportFolder());
        console_.choose(IDM_RECORD_EVENTS);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
            return std::ranges::any_of(readLines(kRootFile), [&](const auto& line) { return line.ends_with(toRoot); });
        }));
        console_.enterLogon("admin", "admin");
        EXPECT_TRUE(waitForEvents());
        exitConsole();
        CloseHandle(holder);
        DeleteFileA(kRootFile);
    }
}

TEST_F(FaultTest, SettingsThatCannotBeSavedStopNothing) {
    RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Kestrel Sonics");
    // Below a key that goes with the session no lasting one can be made.
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Kestrel Sonics", 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    exitConsole();
    EXPECT_FALSE(integer("IPPort").has_value());
    RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Kestrel Sonics");
}

TEST_F(FaultTest, AboutNamesTheVersionsOfAllParts) {
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    console_.choose(IDM_ABOUT);
    const HWND about = console_.waitForWindowWith(IDC_ABOUT_LIST);
    ASSERT_NE(about, nullptr);
    console_.choose(IDM_ABOUT);  // impatiently: one is enough
    Sleep(200);
    EXPECT_EQ(console_.findWindowWith(IDC_ABOUT_LIST), about);
    std::wstring lines;
    for (WPARAM row = 0; row < 4; ++row) {
        wchar_t text[256] = L"";
        SendDlgItemMessageW(about, IDC_ABOUT_LIST, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text));
        lines.append(text).append(L"\n");
    }
    EXPECT_EQ(lines,
              L"Orvane VANTE Event Configuration Console Version 1.0.0.0\nOrvane PassThru Interface Version 1.0.1\n"
              L"Orvane PassThru DLL Version 1.0.0.1\n\n");
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
