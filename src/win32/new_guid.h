// Fresh GUIDs from the system.
#pragma once

#include "link/ks_types.h"

namespace orvc::win32 {

// A GUID that no other call gives, on this computer or another; the null GUID when the system cannot make one.
KSGuid newGuid();

}  // namespace orvc::win32
