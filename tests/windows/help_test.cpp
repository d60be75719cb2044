#include <windows.h>

#include <tlhelp32.h>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class HelpTest : public ConsoleTest {
  protected:
    static constexpr const char* kOpening = "openHelp: Chapter '";

    // Starts a console of its own folder, beside the library and these files of the build.
    void startIn(const std::string& folder, const std::vector<std::string>& files) {
        setInteger("recordEvents", 1);
        for (const std::string& file : files)
            ASSERT_TRUE(CopyFileA((binFolder() + "\\" + file).c_str(), (folder + "\\" + file).c_str(), FALSE)) << file;
        startConsole({}, folder);
    }

    static bool isInMenu(HWND window) {
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state) &&
               (state.flags & GUI_INMENUMODE) != 0;
    }

    std::vector<std::string> openedChapters() const {
        std::vector<std::string> chapters;
        for (const std::string& line : logLines())
            if (line.starts_with(kOpening)) chapters.push_back(line.substr(std::string_view(kOpening).size()));
        return chapters;
    }

    // The console asked for this chapter next, and told once that there is no help file.
    void expectChapter(const std::string& chapter, const std::string& helpFile) {
        const HWND box = console_.waitForMessageBox();
        ASSERT_NE(box, nullptr) << chapter;
        const std::string text = ConsoleDriver::messageText(box);
        EXPECT_TRUE(text.starts_with("The help could not be opened.") && text.ends_with(helpFile)) << text;
        // A key comes after all that an earlier key has led to; a posted click may not.
        press(box, VK_RETURN);
        ASSERT_TRUE(console_.waitUntilGone(box));
        expected_.push_back(chapter + "'");
        // A line that is being written may be there in part.
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
            const std::vector<std::string> opened = openedChapters();
            return opened.size() >= expected_.size() && opened.back().ends_with('\'');
        })) << chapter;
        EXPECT_EQ(openedChapters(), expected_);
    }

    // Viewers that the console has started, as handles that can end them.
    std::vector<HANDLE> findViewers() const {
        std::vector<HANDLE> viewers;
        const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
        PROCESSENTRY32 entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Process32First(snapshot, &entry); more; more = Process32Next(snapshot, &entry))
            if (entry.th32ParentProcessID == GetProcessId(console_.process()) &&
                lstrcmpiA(entry.szExeFile, "hh.exe") == 0)
                viewers.push_back(OpenProcess(PROCESS_TERMINATE, FALSE, entry.th32ProcessID));
        CloseHandle(snapshot);
        return viewers;
    }

    std::vector<std::string> expected_;
};

TEST_F(HelpTest, F1AsksForTheChapterOfTheWindowAndSaysWhenThereIsNoHelp) {
    const std::string folder = makeFolderWithConsole();
    const std::string file = folder + "\\HelpFile.chm";
    startIn(folder, {"KSPassThru.dll"});
    const auto ask = [&](HWND window, const std::string& chapter) {
        ASSERT_NE(window, nullptr) << chapter;
        press(window, VK_F1);
        expectChapter(chapter, file);
    };
    // In the box that says so F1 puts no second one on top.
    press(console_.logonDialog(), VK_F1);
    const HWND box = console_.waitForMessageBox();
    ASSERT_NE(box, nullptr);
    press(box, VK_F1);
    expectChapter("logon.htm", file);
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    const HWND main = console_.mainWindow();
    console_.choose(IDM_HELP);
    expectChapter("", file);
    // An open menu is closed first.
    press(main, VK_F10);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return isInMenu(main); }));
    ask(main, "main-window.htm");
    EXPECT_FALSE(isInMenu(main));
    struct {
        unsigned command;
        unsigned control;
        const char* chapter;
    } const windows[] = {
        {IDM_ABOUT, IDC_ABOUT_LIST, "about.htm"},
        {IDM_SCHEDULES, IDC_SCHEDULE_LIST, "schedules.htm"},
        {IDM_CREATE_EVENT, IDC_EVENT_TRIGGER, "event-editor.htm"},
        {IDM_PREFERENCES, IDC_PREFERENCES_TABS, "preferences.htm"},
    };
    for (const auto& [command, control, chapter] : windows) {
        const HWND dialog = console_.open(command, control);
        ask(dialog, chapter);
        if (command == IDM_CREATE_EVENT) {
            // An open list is closed, and nothing is chosen.
            ConsoleDriver::type(dialog, IDC_EVENT_NAME, "Any");
            SetForegroundWindow(dialog);
            PostMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
            PostMessageA(GetDlgItem(dialog, control), CB_SHOWDROPDOWN, TRUE, 0);
            ask(dialog, chapter);
            EXPECT_EQ(ConsoleDriver::selectedEntry(dialog, control), "<Select Trigger>");
        }
        if (command == IDM_PREFERENCES) {
            console_.clickTab(dialog, control, 1);
            HWND page = nullptr;
            while (GetDlgItem(page, IDC_PREFERENCES_TEST) == nullptr)
                ASSERT_NE(page = FindWindowExA(dialog, page, "#32770", nullptr), nullptr);
            PostMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(page, IDC_PREFERENCES_HOST)), TRUE);
            ask(dialog, "preferences-email.htm");
            ConsoleDriver::click(page, IDC_PREFERENCES_TEST);
            const HWND test = console_.waitForWindowWith(IDC_EMAIL_FROM);
            ask(test, "email-test.htm");
            ConsoleDriver::click(test, IDCANCEL);
            ASSERT_TRUE(console_.waitUntilGone(test));
        }
        PostMessageA(dialog, WM_CLOSE, 0, 0);
        ASSERT_TRUE(console_.waitUntilGone(dialog)) << chapter;
    }
    // A question stays open and unanswered.
    console_.selectRow(0);
    const HWND question = console_.openMessageBox(IDM_DELETE_EVENT);
    ASSERT_NE(question, nullptr);
    press(question, VK_F1);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
        const HWND answer = console_.findMessageBox();
        return answer != nullptr && answer != question;
    }));
    expectChapter("messages.htm", file);
    EXPECT_EQ(console_.findMessageBox(), question);
}

// With a blank and a letter beyond ASCII in its path.
TEST_F(HelpTest, TheViewerRunsInAProcessOfItsOwn) {
    const std::string folder = makeFolderWithConsole() + "\\of the h\xF4tel";
    ASSERT_TRUE(CreateDirectoryA(folder.c_str(), nullptr));
    startIn(folder, {"ORVSConfig.exe", "KSPassThru.dll", "HelpFile.chm"});
    const HWND logon = console_.logonDialog();
    ASSERT_NE(logon, nullptr);
    press(logon, VK_F1);
    std::vector<HANDLE> viewers;
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return !(viewers = findViewers()).empty(); }));
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return logHas("Help File is named '" + folder + "\\HelpFile.chm'"); }));
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    for (const HANDLE viewer : viewers) {
        TerminateProcess(viewer, 0);
        CloseHandle(viewer);
    }
    EXPECT_EQ(viewers.size(), 1u);
}

}  // namespace
}  // namespace orvc::test
