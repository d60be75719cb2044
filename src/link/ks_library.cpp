#include "link/ks_library.h"

namespace orvc {

bool bindEntryPoints(KSLibrary& library, const EntryPointLookup& lookUp) {
    bool complete = true;
#define ORVC_BIND(name, parameters)                                            \
    library.name = reinterpret_cast<KSLibrary::name##Function>(lookUp(#name)); \
    complete = complete && library.name != nullptr;
    ORVC_KS_ENTRY_POINTS(ORVC_BIND)
#undef ORVC_BIND
    return complete;
}

}  // namespace orvc
