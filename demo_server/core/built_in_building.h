// The building that comes with the demo server.
#pragma once

#include <cstdint>

#include "demo_server/core/installation.h"

namespace orvc::demo {

// The users of every installation that is not read from a file: admin (with admin rights) and operator (without), each
// with the user's name as the password.
std::vector<User> defaultUsers();

// A clinic with its stations, groups, messages, Schedules and Events. `now`, in seconds since 1970 UTC, is what the
// past firings are counted back from.
Installation makeBuiltInBuilding(std::uint32_t now);

}  // namespace orvc::demo
