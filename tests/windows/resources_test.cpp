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
    for (const unsigned id :
         {IDD_ABOUT, IDD_MAIN, IDD_LOGON, IDD_PLEASE_WAIT, IDD_CONFIGURE_SCHEDULES, IDD_EDIT_SCHEDULE, IDD_SETUP_EVENT,
          IDD_SERVER_AUDIO, IDD_TTS_FILENAME, IDD_TTS, IDD_EMAIL}) {
        const HWND dialog = CreateDialogParamA(program_, MAKEINTRESOURCEA(id), nullptr, ignore, 0);
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
    const std::pair<unsigned, unsigned> ranges[] = {{101, 112},
                                                    {115, 119},
                                                    {138, 139},
                                                    {142, 143},
                                                    {150, 150},
                                                    {168, 169},
                                                    {176, 188},
                                                    {201, 202},
                                                    {206, 208},
                                                    {210, 210},
                                                    {220, 227},
                                                    {230, 235},
                                                    {IDS_PERIOD_NO_END, IDS_SCHEDULE_RENAME_HINT}};
    for (const auto& [first, last] : ranges)
        for (unsigned id = first; id <= last; ++id) {
            char text[256] = "";
            EXPECT_GT(LoadStringA(program_, id, text, sizeof text), 0) << id;
        }
}

}  // namespace
}  // namespace orvc::test
