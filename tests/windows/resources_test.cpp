// Every dialog that the program names is there and whole.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <set>

#include "resources/resource.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

INT_PTR CALLBACK ignore(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

class ResourcesTest : public ConsoleTest {};

TEST_F(ResourcesTest, EveryDialogOpensWithItsControlsInsideAndApart) {
    InitCommonControls();
    const HMODULE program = LoadLibraryExA((binFolder() + "\\ORVSConfig.exe").c_str(), nullptr,
                                           LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    ASSERT_NE(program, nullptr);
    for (const unsigned id : {IDD_ABOUT, IDD_MAIN, IDD_LOGON, IDD_PLEASE_WAIT, IDD_CONFIGURE_SCHEDULES,
                              IDD_EDIT_SCHEDULE, IDD_SETUP_EVENT, IDD_SERVER_AUDIO, IDD_TTS_FILENAME, IDD_TTS,
                              IDD_EMAIL, IDD_PREFERENCES, IDD_PREFERENCES_GENERAL, IDD_PREFERENCES_EMAIL}) {
        // A page has to have a parent.
        const HWND dialog = CreateDialogParamA(program, MAKEINTRESOURCEA(id), GetDesktopWindow(), ignore, 0);
        ASSERT_NE(dialog, nullptr) << id;
        RECT client{};
        GetClientRect(dialog, &client);
        std::set<int> ids;
        for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            RECT area{};
            GetWindowRect(child, &area);
            MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
            EXPECT_TRUE(area.left >= 0 && area.top >= 0 && area.right <= client.right && area.bottom <= client.bottom)
                << "dialog " << id << ", control " << GetDlgCtrlID(child);
            EXPECT_TRUE(ids.insert(GetDlgCtrlID(child)).second) << "dialog " << id;
        }
        DestroyWindow(dialog);
    }
    FreeLibrary(program);
}

}  // namespace
}  // namespace orvc::test
