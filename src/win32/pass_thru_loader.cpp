#include "win32/pass_thru_loader.h"

#include <windows.h>

#include <memory>

#include "win32/handles.h"
#include "win32/system_files.h"

namespace orvc::win32 {
namespace {

constexpr const char* kLibraryName = "KSPassThru.dll";
// Where a development installation of the maker's has it, seen from the console's folder.
constexpr const char* kDevelopmentLibrary = "..\\..\\KSPassThruConsoleDll\\Debug\\KSPassThru.dll";

}  // namespace

bool loadPassThruLibrary(KSServerLink& link, TrackingLog& log) {
    auto module = std::make_shared<UniqueModule>(LoadLibraryA(kLibraryName));
    if (!*module) {
        log.log("Failed to open KSPassThru.dll");
        return false;
    }
    KSLibrary library;
    const HMODULE handle = module->get();
    const bool complete = bindEntryPoints(
        library, [handle](const char* name) { return reinterpret_cast<void*>(GetProcAddress(handle, name)); });
    if (!complete) log.log("Could NOT get all proc addresses");
    link.adoptLibrary(library, [module] { module->reset(); });
    return true;
}

std::string passThruVersionText() {
    const std::string text = fileVersionText(kDevelopmentLibrary);
    return !text.empty() ? text : fileVersionText(kLibraryName);
}

}  // namespace orvc::win32
