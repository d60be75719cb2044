#include "ui/drop_down_keys.h"

#include <commctrl.h>

#include <exception>
#include <utility>

#include "ui/controls.h"
#include "ui/dialog.h"

namespace orvc::ui {
namespace {

// Keys, and what opens a list.
bool isWatched(UINT message) {
    return message == WM_CHAR || message == WM_KEYDOWN || message == WM_SYSKEYDOWN || message == WM_LBUTTONDOWN ||
           message == CB_SHOWDROPDOWN;
}

bool isOpen(HWND dropDown) {
    return SendMessageA(dropDown, CB_GETDROPPEDSTATE, 0, 0) != 0;
}

}  // namespace

void DropDownKeys::attach(HWND dropDown, Search search) {
    dropDown_ = dropDown;
    search_ = std::move(search);
    SetWindowSubclass(dropDown, procedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK DropDownKeys::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                         DWORD_PTR pointer) {
    if (!isWatched(message)) return DefSubclassProc(window, message, wParam, lParam);
    auto& keys = *reinterpret_cast<DropDownKeys*>(pointer);
    const bool wasOpen = isOpen(window);
    if (message == WM_CHAR && keys.takesCharacter(wParam)) {
        try {
            const auto found = keys.search_.find(static_cast<char>(wParam), selectedEntry(window));
            if (found) keys.choose(static_cast<int>(*found));
        } catch (const std::exception& error) {
            reportFailure(error.what());
        }
        return 0;
    }
    const int before = selectedEntry(window);
    const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
    if (!wasOpen && isOpen(window)) keys.chosenBefore_ = before;
    if (wasOpen && message == WM_KEYDOWN && wParam == VK_ESCAPE) keys.choose(keys.chosenBefore_);
    return result;
}

bool DropDownKeys::takesCharacter(WPARAM character) const {
    if (!search_.find || character < ' ') return false;
    return character != ' ' || search_.isTyping();
}

void DropDownKeys::choose(int entry) const {
    if (entry == selectedEntry(dropDown_)) return;
    SendMessageA(dropDown_, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
    SendMessageA(GetParent(dropDown_), WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(dropDown_)), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(dropDown_));
}

}  // namespace orvc::ui
