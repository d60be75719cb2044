// The current locale's order of names.
#pragma once

#include <string>
#include <string_view>

namespace orvc::win32 {

// A text whose byte order is the order of names without regard to case.
std::string makeSortKey(std::string_view name);

}  // namespace orvc::win32
