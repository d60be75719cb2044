#include "win32/pass_thru_loader.h"

#include <windows.h>

#include "win32/handles.h"
#include "win32/system_files.h"

namespace orvc::win32 {
namespace {

constexpr const char* kLibraryName = "KSPassThru.dll";
// Where a development installation of the maker's has it, seen from the current folder. Only its version is read.
constexpr const char* kDevelopmentLibrary = "..\\..\\KSPassThruConsoleDll\\Debug\\KSPassThru.dll";

}  // namespace

bool loadPassThruLibrary(KSServerLink& link, TrackingLog& log) {
    const HMODULE handle = LoadLibraryA(kLibraryName);
    if (handle == nullptr) {
        log.log("Failed to open KSPassThru.dll (looked in '%s' and '%s')", programFolder().c_str(),
                systemFolder().c_str());
        return false;
    }
    KSLibrary library;
    const bool complete = bindEntryPoints(
        library, [handle](const char* name) { return reinterpret_cast<void*>(GetProcAddress(handle, name)); });
    if (!complete) log.log("Could NOT get all proc addresses");
    // Freed when the link says so, and else never: a library that could not be opened stays as it is.
    link.adoptLibrary(library, [handle] { UniqueModule(handle).reset(); });
    return true;
}

std::string passThruVersionText() {
    const std::string text = fileVersionText(kDevelopmentLibrary);
    return !text.empty() ? text : fileVersionText(kLibraryName);
}

}  // namespace orvc::win32
