// The console's icon in the notification area.
#pragma once

#include <windows.h>

#include <string>

namespace orvc::ui {

// Thread: user-interface thread. The destructor takes the icon away.
class TrayIcon {
  public:
    TrayIcon() = default;
    ~TrayIcon() { remove(); }
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;

    // The shell sends `message` to `window` for the mouse (lParam = mouse message). `icon` outlives this. Returns
    // false when the shell does not show the icon, for lack of a taskbar for instance.
    bool add(HWND window, UINT message, HICON icon, const std::string& tip);
    void remove();
    bool isShown() const { return window_ != nullptr; }

  private:
    HWND window_ = nullptr;
    UINT id_ = 0;
};

// Brings a window to the foreground from wherever it is, also when another program's window is active.
void bringToForeground(HWND window);

}  // namespace orvc::ui
