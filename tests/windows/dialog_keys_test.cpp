// What the keyboard does in the dialogs, with real keys, and what they say when the link is lost.
#include <windows.h>

#include <commctrl.h>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class DialogKeysTest : public ConsoleTest {
  protected:
    void logOn(const std::string& options = {}) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
    }
    // Presses each letter or digit in turn in the dialog that has the keyboard.
    static void typeKeys(HWND dialog, const std::string& keys) {
        for (const char key : keys)
            press(dialog, static_cast<BYTE>(key));
    }
    static bool hasFocus(HWND dialog, unsigned id) {
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        return GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &state) &&
               state.hwndFocus == GetDlgItem(dialog, static_cast<int>(id));
    }
    static bool waitForFocus(HWND dialog, unsigned id) {
        return ConsoleDriver::waitUntil([&] { return hasFocus(dialog, id); }, 3000);
    }
    static bool waitForEntry(HWND dialog, unsigned id, const std::string& text) {
        return ConsoleDriver::waitUntil([&] { return ConsoleDriver::selectedEntry(dialog, id) == text; }, 3000);
    }
    static bool waitForText(HWND dialog, unsigned id, const std::string& beginning) {
        return ConsoleDriver::waitUntil([&] { return ConsoleDriver::textOf(dialog, id).starts_with(beginning); });
    }
    static std::string takeClipboard() {
        std::string text;
        if (!OpenClipboard(nullptr)) return text;
        if (const HANDLE data = GetClipboardData(CF_TEXT)) {
            text = static_cast<const char*>(GlobalLock(data));
            GlobalUnlock(data);
        }
        EmptyClipboard();
        CloseClipboard();
        return text;
    }
};

TEST_F(DialogKeysTest, PlacesAreFoundByTypingEscRestoresThemAndTheContentCanBeCopied) {
    logOn();
    const HWND editor = console_.open(IDM_CREATE_EVENT, IDC_EVENT_TRIGGER);
    ASSERT_NE(editor, nullptr);
    ConsoleDriver::type(editor, IDC_EVENT_NAME, "x");
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor, IDC_EVENT_TRIGGER, "Sensor Deactivation"));
    // Underlined letters lead to their fields.
    press(editor, 'O', {VK_MENU});
    ASSERT_TRUE(waitForFocus(editor, IDC_EVENT_SOURCE));
    typeKeys(editor, "DESK");
    EXPECT_TRUE(waitForEntry(editor, IDC_EVENT_SOURCE, "device: Night desk (100017)"))
        << ConsoleDriver::selectedEntry(editor, IDC_EVENT_SOURCE);
    EXPECT_TRUE(ConsoleDriver::isEnabled(editor, IDC_EVENT_SCHEDULE)) << "the editor was told";
    press(editor, VK_F4);
    Sleep(1100);
    typeKeys(editor, "2");
    EXPECT_TRUE(waitForEntry(editor, IDC_EVENT_SOURCE, "device: Car park level 2 (100009)"))
        << ConsoleDriver::selectedEntry(editor, IDC_EVENT_SOURCE);
    press(editor, VK_ESCAPE);
    EXPECT_TRUE(waitForEntry(editor, IDC_EVENT_SOURCE, "device: Night desk (100017)"));
    EXPECT_TRUE(IsWindow(editor)) << "only the list has closed";

    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor, IDC_EVENT_SCHEDULE, "Nights"));
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor, IDC_EVENT_RESPONSE, "Activate Relay"));
    press(editor, 'I', {VK_MENU});
    ASSERT_TRUE(waitForFocus(editor, IDC_EVENT_DESTINATION));
    typeKeys(editor, "NURSES");
    EXPECT_TRUE(waitForEntry(editor, IDC_EVENT_DESTINATION, "device: Nurses station 1 (10000c)"))
        << ConsoleDriver::selectedEntry(editor, IDC_EVENT_DESTINATION);
    press(editor, VK_TAB);
    ASSERT_TRUE(waitForFocus(editor, IDC_EVENT_RESPONSE_LINE));
    takeClipboard();
    press(editor, 'C', {VK_CONTROL});
    EXPECT_TRUE(ConsoleDriver::waitUntil([] { return takeClipboard() == "Relay Activation for Destination"; }));
    press(editor, 'X');
    EXPECT_EQ(ConsoleDriver::textOf(editor, IDC_EVENT_RESPONSE_LINE), "Relay Activation for Destination");
    exitConsole();
}

TEST_F(DialogKeysTest, CtrlTabChangesPagesAndDaysAndListsTakeEnterAndDel) {
    logOn();
    const HWND preferences = console_.open(IDM_PREFERENCES, IDC_PREFERENCES_TABS);
    ASSERT_NE(preferences, nullptr);
    const auto page = [&] { return SendDlgItemMessageA(preferences, IDC_PREFERENCES_TABS, TCM_GETCURSEL, 0, 0); };
    press(preferences, VK_TAB);
    for (const LRESULT expected : {1, 0, 1}) {
        press(preferences, VK_TAB, {VK_CONTROL});
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return page() == expected; }, 3000));
        EXPECT_TRUE(hasKeyboard(preferences));
    }
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    GetGUIThreadInfo(GetWindowThreadProcessId(preferences, nullptr), &state);
    EXPECT_EQ(GetDlgCtrlID(state.hwndFocus), IDC_PREFERENCES_USER) << "the page that is seen has the keyboard";
    press(preferences, VK_ESCAPE);
    ASSERT_TRUE(console_.waitUntilGone(preferences));

    const HWND list = console_.open(IDM_SCHEDULES, IDC_SCHEDULE_LIST);
    ASSERT_NE(list, nullptr);
    const auto count = [&] { return SendDlgItemMessageA(list, IDC_SCHEDULE_LIST, LVM_GETITEMCOUNT, 0, 0); };
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return count() == 6; }));
    press(list, VK_RETURN);
    EXPECT_FALSE(console_.waitUntilGone(list, 300)) << "nothing is selected: Enter does not close";
    press(list, VK_DOWN);
    press(list, VK_RETURN);
    const HWND editor = console_.waitForWindowWith(IDC_SCHEDULE_DAY_TABS);
    ASSERT_NE(editor, nullptr);
    const auto day = [&] { return SendDlgItemMessageA(editor, IDC_SCHEDULE_DAY_TABS, TCM_GETCURSEL, 0, 0); };
    // The midnight that ends a whole day has to be chosen again before the day can be left.
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor, IDC_SCHEDULE_TIME + 5, "AM"));
    press(editor, VK_TAB, {VK_CONTROL, VK_SHIFT});
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return day() == 6; }, 3000));
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor, IDC_SCHEDULE_TIME + 5, "AM"));
    press(editor, VK_TAB, {VK_CONTROL});
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return day() == 0; }, 3000));
    // A list that is disabled under the keyboard hands it on.
    press(editor, '1', {VK_MENU});
    ASSERT_TRUE(waitForFocus(editor, IDC_SCHEDULE_TIME));
    press(editor, VK_TAB);
    ASSERT_TRUE(waitForFocus(editor, IDC_SCHEDULE_TIME + 1));
    ASSERT_TRUE(ConsoleDriver::chooseEntry(editor, IDC_SCHEDULE_TIME, "None"));
    EXPECT_FALSE(ConsoleDriver::isEnabled(editor, IDC_SCHEDULE_TIME + 1));
    EXPECT_TRUE(hasKeyboard(editor));
    press(editor, VK_ESCAPE);
    ASSERT_TRUE(console_.waitUntilGone(editor));
    press(list, VK_DELETE);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return count() == 5; }, 3000));
    exitConsole();
}

TEST_F(DialogKeysTest, ALogonAboveAnEditorTakesNoKeyOfIt) {
    logOn("stop-once=4");
    const HWND editor = console_.open(IDM_CREATE_EVENT, IDC_EVENT_TRIGGER);
    ASSERT_NE(editor, nullptr);
    const int height = [&] {
        RECT area{};
        GetClientRect(editor, &area);
        return area.bottom;
    }();
    // Somebody types while the logon comes up.
    HWND logon = nullptr;
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
        pressNow('X');
        Sleep(50);
        return (logon = console_.findWindowWith(IDC_LOGON_ID)) != nullptr;
    }));
    for (int i = 0; i < 20; ++i) {
        pressNow(i % 2 == 0 ? 'X' : VK_ESCAPE);
        Sleep(50);
    }
    EXPECT_TRUE(IsWindow(logon));
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    EXPECT_EQ(ConsoleDriver::textOf(logon, IDC_LOGON_ID), "");
    EXPECT_TRUE(waitForText(editor, IDC_EVENT_FOOT, "Not connected to 127.0.0.1:3010 since "));
    RECT area{};
    GetClientRect(editor, &area);
    EXPECT_GT(area.bottom, height) << "the line has room";

    // After a pause the keys are the logon's own.
    Sleep(600);
    press(logon, 'A');
    EXPECT_TRUE(waitForText(logon, IDC_LOGON_ID, "a"));
    press(logon, VK_ESCAPE);
    HWND question = console_.waitForMessageBox();
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(ConsoleDriver::messageText(question), "Close the console and lose what you entered?");
    press(question, VK_RETURN);
    ASSERT_TRUE(console_.waitUntilGone(question));
    EXPECT_TRUE(IsWindow(editor) && IsWindow(logon));

    // The first failure is silent in the dialog: the main window and the editor say why.
    console_.enterLogon("admin", "admin", "10.0.0.9");
    const std::string reason = " reaches the server. The server was not found.";
    const auto says = [&](HWND window, unsigned id) {
        return ConsoleDriver::waitUntil([&] { return ConsoleDriver::textOf(window, id).ends_with(reason); });
    };
    EXPECT_TRUE(says(console_.mainWindow(), IDC_LINK_BANNER));
    EXPECT_TRUE(says(editor, IDC_EVENT_FOOT));
    // The countdown, then the console.
    for (int i = 0; i < 2; ++i)
        ConsoleDriver::click(logon, IDCANCEL);
    question = console_.waitForMessageBox();
    ASSERT_NE(question, nullptr);
    ConsoleDriver::click(question, IDYES);
    EXPECT_TRUE(console_.waitForEnd());
}

}  // namespace
}  // namespace orvc::test
