#include "win32/controls.h"

namespace orvc::win32 {
namespace {

// The list inside a drop-down list: it is what repaints for each entry.
HWND listOf(HWND dropDown) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    return GetComboBoxInfo(dropDown, &info) ? info.hwndList : nullptr;
}

}  // namespace

void fillDropDown(HWND dropDown, const std::vector<std::string>& texts, int selected) {
    const HWND list = listOf(dropDown);
    std::size_t bytes = 0;
    for (const std::string& text : texts)
        bytes += text.size() + 1;
    SendMessageA(dropDown, WM_SETREDRAW, FALSE, 0);
    if (list != nullptr) SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    SendMessageA(dropDown, CB_RESETCONTENT, 0, 0);
    SendMessageA(dropDown, CB_INITSTORAGE, texts.size(), static_cast<LPARAM>(bytes));
    for (const std::string& text : texts)
        SendMessageA(dropDown, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageA(dropDown, CB_SETCURSEL, static_cast<WPARAM>(selected), 0);
    if (list != nullptr) SendMessageA(list, WM_SETREDRAW, TRUE, 0);
    SendMessageA(dropDown, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(dropDown, nullptr, TRUE);
}

int selectedEntry(HWND dropDown) {
    return static_cast<int>(SendMessageA(dropDown, CB_GETCURSEL, 0, 0));
}

void liftTextLimit(HWND edit) {
    SendMessageA(edit, EM_SETLIMITTEXT, 0, 0);
}

}  // namespace orvc::win32
