// Which Event happens next.
#pragma once

#include <optional>
#include <random>
#include <string>

#include "demo_server/core/variable_tree.h"

namespace orvc::demo {

// The path (with its last backslash) of some Event that can happen by itself at any moment: it is complete, switched
// on, and waits for a station (a button, a sensor, a relay, a connection), not for the server or the time of day. Looks
// at a limited number of Events only, so that it takes the same time in an installation of any size; nothing when none
// of those will do.
std::optional<std::string> chooseEventToFire(const VariableTree& variables, std::mt19937& random);

}  // namespace orvc::demo
