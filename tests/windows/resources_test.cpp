// Every dialog, menu and text that the program names is there and can be loaded.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <set>
#include <string>
#include <utility>

#include "resources/resource.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

class ResourcesTest : public ConsoleTest {
  protected:
    void SetUp() override {
        InitCommonControls();
        program_ = LoadLibraryExA((binFolder() + "\\ORVSConfig.exe").c_str(), nullptr,
                                  LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
        ASSERT_NE(program_, nullptr);
    }
    void TearDown() override { FreeLibrary(program_); }

    HMODULE program_ = nullptr;
};

INT_PTR CALLBACK ignore(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

TEST_F(ResourcesTest, EveryDialogOpensWithItsControlsInsideAndApart) {
    for (const unsigned id : {IDD_ABOUT, IDD_MAIN, IDD_LOGON, IDD_PLEASE_WAIT, IDD_CONFIGURE_SCHEDULES,
                              IDD_EDIT_SCHEDULE, IDD_SETUP_EVENT, IDD_SERVER_AUDIO, IDD_TTS_FILENAME, IDD_TTS,
                              IDD_EMAIL, IDD_PREFERENCES, IDD_PREFERENCES_GENERAL, IDD_PREFERENCES_EMAIL}) {
        // A page has to have a parent.
        const HWND dialog = CreateDialogParamA(program_, MAKEINTRESOURCEA(id), GetDesktopWindow(), ignore, 0);
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
            EXPECT_TRUE(ids.insert(GetDlgCtrlID(child)).second)
                << "dialog " << id << ", control " << GetDlgCtrlID(child);
        }
        EXPECT_FALSE(ids.empty()) << id;
        DestroyWindow(dialog);
    }
}

TEST_F(ResourcesTest, MenusIconAndTextsAreThere) {
    for (const unsigned id : {IDR_MAIN_MENU, IDR_TRAY_MENU})
        EXPECT_NE(LoadMenuA(program_, MAKEINTRESOURCEA(id)), nullptr) << id;
    for (const int size : {16, 20, 24, 32, 40, 48, 64, 128, 256})
        EXPECT_NE(LoadImageA(program_, MAKEINTRESOURCEA(IDI_MAIN), IMAGE_ICON, size, size, 0), nullptr) << size;
    for (const unsigned id :
         {101u, 102u, 103u, 104u, 105u, 106u, 107u, 108u, 109u, 110u, 111u, 112u, 115u, 116u, 117u, 118u,
          119u, 138u, 139u, 142u, 143u, 150u, 168u, 169u, 179u, 180u, 181u, 201u, 202u, 206u, 207u, 208u,
          210u, 220u, 221u, 222u, 223u, 224u, 225u, 226u, 227u, 230u, 231u, 232u, 233u, 234u}) {
        char text[256] = "";
        EXPECT_GT(LoadStringA(program_, id, text, sizeof text), 0) << id;
    }
    const std::pair<unsigned, unsigned> ranges[] = {{IDS_COLUMN_SCHEDULE_NAME, IDS_COLUMN_TIMES},
                                                    {IDS_DAY_TAB_SUNDAY, IDS_DAY_TAB_SATURDAY},
                                                    {IDS_TAB_GENERAL, IDS_TAB_EMAIL},
                                                    {IDS_PORT_RANGE, IDS_WAIT_SENDING},
                                                    {IDS_PERIOD_NO_END, IDS_SCHEDULE_RENAME_HINT}};
    for (const auto& [first, last] : ranges)
        for (unsigned id = first; id <= last; ++id) {
            char text[256] = "";
            EXPECT_GT(LoadStringA(program_, id, text, sizeof text), 0) << id;
        }
}

}  // namespace
}  // namespace orvc::test
