#include "ui/controls.h"

#include <commctrl.h>

namespace orvc::ui {
namespace {

HWND listOf(HWND dropDown) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    return GetComboBoxInfo(dropDown, &info) ? info.hwndList : nullptr;
}

constexpr std::size_t kUsualEntry = 40;  // bytes

}  // namespace

// The list inside takes entries in little more than half the time, and is what repaints for each.
DropDownFill::DropDownFill(HWND dropDown, std::size_t count)
    : dropDown_(dropDown),
      list_(listOf(dropDown)),
      target_(list_ != nullptr ? list_ : dropDown),
      add_(list_ != nullptr ? LB_ADDSTRING : CB_ADDSTRING) {
    SendMessageA(dropDown_, WM_SETREDRAW, FALSE, 0);
    if (list_ != nullptr) SendMessageA(list_, WM_SETREDRAW, FALSE, 0);
    SendMessageA(dropDown_, CB_RESETCONTENT, 0, 0);
    SendMessageA(dropDown_, CB_INITSTORAGE, count, static_cast<LPARAM>(count * kUsualEntry));
}

DropDownFill::~DropDownFill() {
    if (list_ != nullptr) SendMessageA(list_, WM_SETREDRAW, TRUE, 0);
    SendMessageA(dropDown_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(dropDown_, nullptr, TRUE);
}

int selectedEntry(HWND dropDown) {
    return static_cast<int>(SendMessageA(dropDown, CB_GETCURSEL, 0, 0));
}

void selectEntry(HWND dropDown, std::int64_t entry) {
    // Asked for by number: what CB_SETCURSEL does with one that the list does not have differs between systems.
    const bool isThere = entry >= 0 && entry < SendMessageA(dropDown, CB_GETCOUNT, 0, 0);
    const int wanted = isThere ? static_cast<int>(entry) : -1;
    if (selectedEntry(dropDown) != wanted) SendMessageA(dropDown, CB_SETCURSEL, static_cast<WPARAM>(wanted), 0);
}

std::optional<int> tabChosenBy(const MSG& message, HWND tabs) {
    const bool isKey = message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0;
    if (!isKey || GetAncestor(message.hwnd, GA_ROOT) != GetAncestor(tabs, GA_ROOT)) return std::nullopt;
    const auto count = static_cast<int>(SendMessageA(tabs, TCM_GETITEMCOUNT, 0, 0));
    const auto current = static_cast<int>(SendMessageA(tabs, TCM_GETCURSEL, 0, 0));
    if (count == 0) return std::nullopt;
    return (current + (GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1)) % count;
}

void liftTextLimit(HWND edit) {
    SendMessageA(edit, EM_SETLIMITTEXT, 0, 0);
}

}  // namespace orvc::ui
