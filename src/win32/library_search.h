// Where Windows looks for libraries that this program loads by name.
#pragma once

namespace orvc::win32 {

// From now on the program's own folder and the system's, and never the current folder or the PATH, where anybody may
// have put a library of the wanted name. On a Windows 7 that lacks the call for it (update KB2533623) the PATH stays,
// behind the others. Before anything is loaded; user-interface thread.
void restrictLibrarySearch();

}  // namespace orvc::win32
