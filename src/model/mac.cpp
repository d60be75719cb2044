#include "model/mac.h"

#include <cstdio>

#include "support/text.h"

namespace orvc {

std::string formatMac(const KSMac& mac) {
    return formatText("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

std::optional<KSMac> parseMac(const std::string& text) {
    unsigned part[6];
    if (std::sscanf(text.c_str(), "%02x:%02x:%02x:%02x:%02x:%02x", &part[0], &part[1], &part[2], &part[3], &part[4],
                    &part[5]) != 6)
        return std::nullopt;
    KSMac mac;
    for (std::size_t i = 0; i < mac.size(); ++i)
        mac[i] = static_cast<std::uint8_t>(part[i]);
    return mac;
}

std::string formatMacTail(const KSMac& mac) {
    return formatText("%02x%02x%02x", mac[3], mac[4], mac[5]);
}

}  // namespace orvc
