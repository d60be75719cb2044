#include "ui/tray_icon.h"

#include <shellapi.h>

namespace orvc::ui {

bool TrayIcon::add(HWND window, UINT message, HICON icon, const std::string& tip) {
    remove();
    NOTIFYICONDATAA data{};
    data.cbSize = sizeof data;
    data.hWnd = window;
    data.uID = message;
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = message;
    data.hIcon = icon;
    lstrcpynA(data.szTip, tip.c_str(), sizeof data.szTip);
    if (Shell_NotifyIconA(NIM_ADD, &data) == FALSE) return false;
    window_ = window;
    id_ = message;
    return true;
}

void TrayIcon::remove() {
    if (window_ == nullptr) return;
    NOTIFYICONDATAA data{};
    data.cbSize = sizeof data;
    data.hWnd = window_;
    data.uID = id_;
    Shell_NotifyIconA(NIM_DELETE, &data);
    window_ = nullptr;
}

void bringToForeground(HWND window) {
    // Windows lets only the foreground thread choose the next foreground window: borrow its input.
    const DWORD own = GetCurrentThreadId();
    const DWORD foreground = GetWindowThreadProcessId(GetForegroundWindow(), nullptr);
    const bool attached = foreground != 0 && foreground != own && AttachThreadInput(own, foreground, TRUE);
    ShowWindow(window, IsIconic(window) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(window);
    if (attached) AttachThreadInput(own, foreground, FALSE);
}

}  // namespace orvc::ui
