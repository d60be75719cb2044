#include "win32/library_search.h"

#include <windows.h>

namespace orvc::win32 {

void restrictLibrarySearch() {
    SetDllDirectoryA("");  // takes the current folder out
    using SetDefaultDllDirectoriesFunction = BOOL(WINAPI*)(DWORD);
    const auto setDefaultDllDirectories = reinterpret_cast<SetDefaultDllDirectoriesFunction>(
        GetProcAddress(GetModuleHandleA("kernel32.dll"), "SetDefaultDllDirectories"));
    if (setDefaultDllDirectories != nullptr) setDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

}  // namespace orvc::win32
