#include "model/mac.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "support/text.h"

namespace orvc {

namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

std::string formatMac(const KSMac& mac) {
    return formatText("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

std::optional<KSMac> parseMac(std::string_view text) {
    // Two of them for each Event of an installation: scanf takes a tenth of the whole load.
    constexpr std::ptrdiff_t kDigits = 2;
    const char* at = text.data();
    const char* const end = at + text.size();
    KSMac mac;
    for (std::size_t i = 0; i < mac.size(); ++i) {
        if (i > 0 && (at == end || *at++ != ':')) return std::nullopt;
        // As scanf's %02x reads: blanks before a number are skipped.
        at = std::find_if_not(at, end, isBlank);
        const auto [rest, error] = std::from_chars(at, at + std::min(kDigits, end - at), mac[i], 16);
        if (error != std::errc()) return std::nullopt;
        at = rest;
    }
    return mac;
}

std::string formatMacTail(const KSMac& mac) {
    return formatText("%02x%02x%02x", mac[3], mac[4], mac[5]);
}

}  // namespace orvc
