#include "console/start_up.h"

#include <algorithm>
#include <string>

#include "link/event_callback.h"
#include "resources/resource.h"
#include "win32/pass_thru_loader.h"

namespace orvc {

void extendSystemMenu(HWND window, const ui::Resources& resources) {
    const std::string text = resources.text(IDS_ABOUT_MENU);
    const HMENU menu = GetSystemMenu(window, FALSE);
    if (menu == nullptr || text.empty()) return;
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuA(menu, MF_STRING, IDM_ABOUT_SYSTEM, text.c_str());
}

bool openLink(const ConsoleParts& parts, Session& session, LibraryInfo& library) {
    KSServerLink& link = parts.link;
    if (!win32::loadPassThruLibrary(link, parts.log)) return true;
    library.version = link.readVersion().value_or(LibraryVersion{});
    parts.log.log("Loaded KSPassThruDll Version %d.%d.%d", static_cast<int>(library.version.major),
                  static_cast<int>(library.version.minor), static_cast<int>(library.version.build));
    EventCallback::makeCurrent(&session.callback());
    link.open(EventCallback::receive);
    const bool consoleMode = link.isConsoleMode();
    session.setConsoleMode(consoleMode);
    const bool hasScratchFolder = parts.settings.load(consoleMode ? StartMode::kConsole : StartMode::kStandalone);
    parts.log.log("Opened KSPassThruDll with %d flags", static_cast<int>(link.flags()));
    if (!link.isOpen()) parts.log.log("openLink: The library gave no handle, no logon is attempted");
    link.enableDebug();
    library.fileVersion = win32::passThruVersionText();
    return hasScratchFolder;
}

void restoreSize(HWND window, const LocalSettings& settings) {
    if (settings.startWidth <= 0 || settings.startHeight <= 0) return;
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    // WM_GETMINMAXINFO sees to the least size.
    const int width = std::min<int>(settings.startWidth, work.right - work.left);
    const int height = std::min<int>(settings.startHeight, work.bottom - work.top);
    SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void rememberSize(HWND window, LocalSettings& settings) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (!GetWindowPlacement(window, &placement)) return;
    const RECT& normal = placement.rcNormalPosition;
    settings.startWidth = normal.right - normal.left;
    settings.startHeight = normal.bottom - normal.top;
}

}  // namespace orvc
