// The console's table of the library's entry points, and their binding by name.
#pragma once

#include <functional>

#include "link/ks_entry_points.h"

namespace orvc {

// One pointer per entry point, named like it; null where the library lacks the name.
struct KSLibrary {
#define ORVC_DECLARE(name, parameters)                        \
    using name##Function = std::int32_t(KS_CALL*) parameters; \
    name##Function name = nullptr;
    ORVC_KS_ENTRY_POINTS(ORVC_DECLARE)
#undef ORVC_DECLARE
};

#define ORVC_COUNT(name, parameters) +1
inline constexpr int kEntryPointCount = 0 ORVC_KS_ENTRY_POINTS(ORVC_COUNT);
#undef ORVC_COUNT
static_assert(kEntryPointCount == 50);

// Finds an entry point of the loaded library by its undecorated name; null when there is none.
using EntryPointLookup = std::function<void*(const char* name)>;

// Looks up all names in table order and stores every result. Returns true when none is missing.
bool bindEntryPoints(KSLibrary& library, const EntryPointLookup& lookUp);

}  // namespace orvc
