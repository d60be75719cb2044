// What goes wrong around the console, and what happens at the wrong moment.
#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "windows/console_fixture.h"
#include "windows/menu_state.h"

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
    static bool isInMenu(HWND window) {
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state) &&
               (state.flags & GUI_INMENUMODE) != 0;
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
        // The last settings may come after the last Event.
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return (menuState(console_, IDM_DELETE_EVENT) & MF_GRAYED) == 0; }));
        ConsoleDriver::click(box, IDYES);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents - 1; }));
        EXPECT_EQ(console_.rowOf(event), -1) << "the Event that was asked about";
        exitConsole();
        SetUp();
    }
}

TEST_F(FaultTest, AnOpenMenuGoesBeforeTheLogonThatFollowsAServerStop) {
    startConsole("stop-once=3");
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    const HWND main = console_.mainWindow();
    PostMessageA(main, WM_SYSCOMMAND, SC_KEYMENU, 0);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return isInMenu(main); }));
    ASSERT_NE(console_.logonDialog(), nullptr);
    EXPECT_FALSE(isInMenu(main));
    EXPECT_TRUE(console_.logOn(kBuildingEvents));
}

TEST_F(FaultTest, TheFileIsClearedOnYesOnlyAlsoWhileAnotherConsoleWritesItButNotWhenItIsHeld) {
    setInteger("recordEvents", 0);
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    const auto clear = [&](unsigned answer) {
        const HWND box = console_.openMessageBox(IDM_CLEAR_FILE);
        ConsoleDriver::click(box, answer);
        ASSERT_TRUE(console_.waitUntilGone(box));
        ConsoleDriver::waitUntil([&] { return IsWindowEnabled(console_.mainWindow()) || console_.findMessageBox(); });
        SendMessageA(console_.mainWindow(), WM_NULL, 0, 0);  // the answer has been acted on
    };
    const auto holdsTheStart = [&] { return logHas("Orvane Events Console Version 1.0.0.0 started"); };
    clear(IDNO);
    EXPECT_TRUE(holdsTheStart());
    const HANDLE holder =
        CreateFileA(trackingFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    clear(IDYES);
    expectMessage("The support file could not be cleared. Another program is using it.");
    CloseHandle(holder);
    EXPECT_TRUE(holdsTheStart());
    setInteger("recordEvents", 1);
    ConsoleDriver other;
    ASSERT_TRUE(other.start(binFolder() + "\\ORVSConfig.exe"));
    ASSERT_NE(other.logonDialog(), nullptr);
    clear(IDYES);
    EXPECT_FALSE(holdsTheStart());
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

TEST_F(FaultTest, TheLogGoesToTheRootWhenItsFileIsHeldOrItsFolderIsGone) {
    setInteger("recordEvents", 0);
    startConsole();
    ASSERT_NE(console_.logonDialog(), nullptr);
    const auto isTicked = [&] { return (menuState(console_, IDM_RECORD_EVENTS) & MF_CHECKED) != 0; };
    const HANDLE holder = CreateFileA(trackingFile().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    for (const bool isHeld : {true, false}) {
        if (!isHeld) std::filesystem::remove_all(supportFolder());
        EXPECT_FALSE(isTicked());
        console_.choose(IDM_RECORD_EVENTS);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
            return std::ranges::any_of(readLines(kRootFile), [](const std::string& line) {
                return line.ends_with("Could not write to special folder, writing to ROOT");
            });
        }));
        EXPECT_TRUE(isTicked());
        console_.choose(IDM_RECORD_EVENTS);
        ASSERT_TRUE(ConsoleDriver::waitUntil([] { return DeleteFileA(kRootFile) != 0; }));
        if (isHeld) CloseHandle(holder);
    }
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    exitConsole();
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
    EXPECT_TRUE(ConsoleDriver::textOf(about, IDC_ABOUT_NOTICES).ends_with(": THIRD_PARTY_NOTICES.txt"));
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
