// GUIDs as texts: keys of Events and Schedules, and names of payload files.
#pragma once

#include <functional>
#include <string>

#include "link/ks_types.h"
#include "support/tracking_log.h"

namespace orvc {

// The registry form: "{01234567-89AB-CDEF-0123-456789ABCDEF}", 38 characters.
std::string formatGuid(const KSGuid& guid);

// The GUID that `text` names, in either case of digits. A text that does not scan is logged and gives the null GUID.
KSGuid makeGUID(const std::string& text, TrackingLog& log);

// A new GUID on each call.
using GuidMaker = std::function<KSGuid()>;

// The text of a new GUID, for the key of a new Event or the name of a payload file:
// "{01234567-89AB-CDEF-0123-456789ABCDEF}", 38 characters.
std::string newGuidText(const GuidMaker& makeNew);

}  // namespace orvc
