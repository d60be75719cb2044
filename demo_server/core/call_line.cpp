#include "demo_server/core/call_line.h"

#include <cstring>

#include "demo_server/core/text_codec.h"

namespace orvc::demo {

CallLine& CallLine::name(const char* text) {
    text_ += ' ';
    if (text) {
        appendEscaped(text_, text);
    } else {
        text_ += "null";
    }
    return *this;
}

CallLine& CallLine::quoted(std::string_view bytes) {
    text_ += " \"";
    appendEscaped(text_, bytes, "\"");
    text_ += '"';
    return *this;
}

CallLine& CallLine::quoted(const char* text) {
    return text ? quoted(std::string_view(text)) : name(nullptr);
}

CallLine& CallLine::hex(std::uint32_t word) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    text_ += " 0x";
    for (int shift = 28; shift >= 0; shift -= 4)
        text_ += kDigits[word >> shift & 15];
    return *this;
}

CallLine& CallLine::number(std::uint32_t word) {
    text_ += ' ';
    text_ += std::to_string(word);
    return *this;
}

CallLine& CallLine::guid(const KSGuid& guid) {
    text_ += ' ';
    text_ += guidText(guid);
    return *this;
}

CallLine& CallLine::address(const KSSocketAddress* address) {
    if (!address) return name(nullptr);
    std::uint8_t bytes[6];  // address and port, as they travel
    std::memcpy(bytes, &address->address, 4);
    std::memcpy(bytes + 4, &address->port, 2);
    for (int i = 0; i < 4; ++i) {
        text_ += i == 0 ? ' ' : '.';
        text_ += std::to_string(bytes[i]);
    }
    text_ += ':';
    text_ += std::to_string(bytes[4] * 256 + bytes[5]);
    return *this;
}

}  // namespace orvc::demo
