// The order of names.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvc {

// Makes a text whose byte order is the locale's order of names without regard to case.
using SortKeyMaker = std::function<std::string(std::string_view name)>;

}  // namespace orvc
