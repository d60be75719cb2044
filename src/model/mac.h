// MAC addresses as texts.
#pragma once

#include <optional>
#include <string>

#include "link/ks_types.h"

namespace orvc {

// "02:4b:53:00:00:1a": lower-case hexadecimal.
std::string formatMac(const KSMac& mac);

// Reads six numbers separated by colons, upper or lower case. Empty when one is missing.
std::optional<KSMac> parseMac(const std::string& text);

// The last three bytes, as pick lists show them: "00001a".
std::string formatMacTail(const KSMac& mac);

// No device: all bytes zero.
inline bool isNoDevice(const KSMac& mac) {
    return mac == KSMac{};
}

}  // namespace orvc
