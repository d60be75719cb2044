// Windows' own viewer for compiled help.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace orvc::ui {

// Shows a .chm file at a page inside it ("logon.htm"; empty = its first page), in a process of its own. Where the
// viewer cannot be started the file is handed to whatever program opens such files, at its first page. Returns false
// when there is no such file or nothing opens it. `owner` is the window that messages of the shell belong to.
bool openHelpFile(HWND owner, const std::string& path, std::string_view page);

}  // namespace orvc::ui
