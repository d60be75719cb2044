#include "console/tray.h"

#include "link/private_messages.h"
#include "resources/resource.h"

namespace orvc {

void Tray::attach(HWND window, HICON icon) {
    window_ = window;
    image_ = icon;
    menu_ = resources_.loadMenu(IDR_TRAY_MENU);
}

void Tray::apply(bool wanted) {
    wanted_ = wanted;
    if (wanted)
        icon_.add(window_, private_message::kTrayIcon, image_, resources_.text(IDS_TITLE_CONSOLE));
    else
        icon_.remove();
    // A minimised window is hidden exactly while there is an icon that brings it back.
    if (!IsIconic(window_)) return;
    if (icon_.isShown())
        ShowWindow(window_, SW_HIDE);
    else if (!IsWindowVisible(window_))
        ShowWindow(window_, SW_SHOWMINNOACTIVE);
}

void Tray::onTaskbarCreated() {
    apply(wanted_);
}

void Tray::hideMinimized() const {
    if (icon_.isShown()) ShowWindow(window_, SW_HIDE);
}

void Tray::onMouse(LPARAM mouseMessage) const {
    if (mouseMessage == WM_LBUTTONUP) {
        ui::bringToForeground(window_);
    } else if (mouseMessage == WM_RBUTTONUP) {
        POINT at{};
        GetCursorPos(&at);
        // Without this the menu would stay open when the operator clicks elsewhere.
        SetForegroundWindow(window_);
        TrackPopupMenu(GetSubMenu(menu_.get(), 0), TPM_RIGHTBUTTON, at.x, at.y, 0, window_, nullptr);
        PostMessageA(window_, WM_NULL, 0, 0);
    }
}

UINT Tray::taskbarCreatedMessage() {
    static const UINT message = RegisterWindowMessageA("TaskbarCreated");
    return message;
}

}  // namespace orvc
