// What an open dialog says about a link that was lost while it holds what the operator entered.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace orvc {

// The sentences about the lost link; empty while the link is there.
using LinkNote = std::function<std::string()>;

// A dialog asks this often, in milliseconds.
inline constexpr UINT kLinkNotePeriod = 250;

inline std::string joinSentences(const std::string& first, const std::string& second) {
    return first.empty() || second.empty() ? first + second : first + " " + second;
}

}  // namespace orvc
