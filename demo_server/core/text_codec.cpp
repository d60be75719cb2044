#include "demo_server/core/text_codec.h"

namespace orvc::demo {

std::string macText(const KSMac& mac) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text(17, ':');
    for (std::size_t i = 0; i < mac.size(); ++i) {
        text[3 * i] = kDigits[mac[i] >> 4];
        text[3 * i + 1] = kDigits[mac[i] & 15];
    }
    return text;
}

std::optional<KSMac> parseMac(std::string_view text) {
    if (text.size() != 17) return std::nullopt;
    KSMac mac{};
    for (std::size_t i = 0; i < mac.size(); ++i) {
        const int high = hexDigitValue(text[3 * i]);
        const int low = hexDigitValue(text[3 * i + 1]);
        if (high < 0 || low < 0 || (i < 5 && text[3 * i + 2] != ':')) return std::nullopt;
        mac[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return mac;
}

void appendEscaped(std::string& line, std::string_view bytes, std::string_view alsoEscaped) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char byte = bytes[i];
        const bool atAnEnd = i == 0 || i + 1 == bytes.size();
        const bool plain = byte >= 0x20 && byte < 0x7F && byte != '%' && !(byte == ' ' && atAnEnd) &&
                           alsoEscaped.find(byte) == std::string_view::npos;
        if (plain) {
            line += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            line += '%';
            line += kDigits[value >> 4];
            line += kDigits[value & 15];
        }
    }
}

std::optional<std::string> unescape(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::nullopt;
        const int high = hexDigitValue(text[i + 1]);
        const int low = hexDigitValue(text[i + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return bytes;
}

}  // namespace orvc::demo
