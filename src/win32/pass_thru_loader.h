// Loads the maker's pass-through library.
#pragma once

#include <string>

#include "link/server_link.h"
#include "support/tracking_log.h"

namespace orvc::win32 {

// Loads KSPassThru.dll by its bare name, from where restrictLibrarySearch() lets it come, and binds it into `link`.
// Logs what is missing. Returns false when there is no such library.
bool loadPassThruLibrary(KSServerLink& link, TrackingLog& log);

// The library's file version, as the About box shows it.
std::string passThruVersionText();

}  // namespace orvc::win32
