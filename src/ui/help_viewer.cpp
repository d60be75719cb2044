#include "ui/help_viewer.h"

#include <shellapi.h>

#include "win32/handles.h"

namespace orvc::ui {
namespace {

bool isFile(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// The folder of Windows itself: on a terminal server GetWindowsDirectory would name one of the user's own.
std::string viewerPath() {
    std::string path(MAX_PATH, '\0');
    path.resize(GetSystemWindowsDirectoryA(path.data(), MAX_PATH));
    return path + "\\hh.exe";
}

// The program is named apart from its command line, so that no part of a path can pass for a program or an argument.
bool startViewer(const std::string& document) {
    const std::string viewer = viewerPath();
    std::string line = '"' + viewer + "\" \"" + document + '"';
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(viewer.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
        return false;
    const win32::UniqueKernelObject thread(process.hThread);
    const win32::UniqueKernelObject started(process.hProcess);
    return true;
}

}  // namespace

bool openHelpFile(HWND owner, const std::string& path, std::string_view page) {
    if (!isFile(path)) return false;
    // A page inside a compiled file is named behind two colons.
    if (startViewer(page.empty() ? path : path + "::/" + std::string(page))) return true;
    return reinterpret_cast<INT_PTR>(ShellExecuteA(owner, "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL)) > 32;
}

}  // namespace orvc::ui
