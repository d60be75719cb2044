// MAC addresses as texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "link/ks_types.h"

namespace orvc {

// "02:4b:53:00:00:1a": lower-case hexadecimal.
std::string formatMac(const KSMac& mac);

// Reads six numbers of one or two hexadecimal digits with a colon between them, upper or lower case. Blanks before a
// number and whatever follows the last one do not matter. Empty when a number is missing.
std::optional<KSMac> parseMac(std::string_view text);

// The last three bytes, as pick lists show them: "00001a".
std::string formatMacTail(const KSMac& mac);

// No device: all bytes zero.
inline bool isNoDevice(const KSMac& mac) {
    return mac == KSMac{};
}

}  // namespace orvc
