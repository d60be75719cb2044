// Small texts that the installation file, the options and the call trace share.
#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>

#include "link/ks_types.h"

namespace orvc::demo {

// 0 to 15, or -1 for a character that is no hexadecimal digit.
constexpr int hexDigitValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

// A whole text as a decimal number; nothing when anything else stands in it or it does not fit.
template <std::integral Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

// Six pairs of lower-case digits separated by colons, as system variables hold it.
std::string macText(const KSMac& mac);
std::optional<KSMac> parseMac(std::string_view text);

// Appends `bytes` with a percent sign and two digits for the percent sign itself, every byte outside printable ASCII, a
// blank at either end, and each byte of `alsoEscaped`. The result fits on one line and unescapes to the same bytes.
void appendEscaped(std::string& line, std::string_view bytes, std::string_view alsoEscaped = {});

// The reverse; nothing when a percent sign is not followed by two digits.
std::optional<std::string> unescape(std::string_view text);

}  // namespace orvc::demo
