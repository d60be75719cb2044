// Installations of any size, for measuring and for stress.
#pragma once

#include <cstdint>

#include "demo_server/core/installation.h"
#include "demo_server/core/options.h"

namespace orvc::demo {

// The same size gives the same installation each time, but for the past firings, which are counted back from `now`
// (seconds since 1970 UTC). Every Event is complete and refers only to what exists. With no devices the Events name a
// group, with neither they name nothing.
Installation makeGeneratedInstallation(const GeneratedSize& size, std::uint32_t now);

}  // namespace orvc::demo
