// The console in the notification area: its icon, the icon's menu, and hiding behind it.
#pragma once

#include <windows.h>

#include <functional>

#include "ui/resources.h"
#include "ui/tray_icon.h"

namespace orvc {

// Thread: user-interface thread. Lifetime: what the constructor takes outlives it.
class Tray {
  public:
    explicit Tray(const ui::Resources& resources) : resources_(resources) {}

    // The main window is there. `icon` outlives the tray.
    void attach(HWND window, HICON icon);

    // Shows or removes the icon, as the setting wants it.
    void apply(bool wanted);
    void remove() { icon_.remove(); }
    // The shell has restarted the taskbar, without the icon: shows it again.
    void onTaskbarCreated();
    // Hides the minimised window behind its icon, if there is one: without an icon nothing would bring it back.
    void hideMinimized() const;

    // The mouse over the icon.
    void onMouse(LPARAM mouseMessage) const;
    // The message that the shell sends for a new taskbar.
    static UINT taskbarCreatedMessage();

    HMENU menu() const { return menu_.get(); }

  private:
    const ui::Resources& resources_;
    HWND window_ = nullptr;
    HICON image_ = nullptr;
    win32::UniqueMenu menu_;
    ui::TrayIcon icon_;
    bool wanted_ = false;
};

}  // namespace orvc
