#include "demo_server/core/guid.h"

#include <cstring>
#include <random>

#include "demo_server/core/text_codec.h"

namespace orvc::demo {
namespace {

// Positions of the dashes in the registry form.
constexpr bool isDash(std::size_t index) {
    return index == 9 || index == 14 || index == 19 || index == 24;
}

KSGuid guidFromBytes(const std::array<std::uint8_t, 16>& bytes) {
    KSGuid guid;
    guid.data1 = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                 static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    guid.data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    std::memcpy(guid.data4.data(), bytes.data() + 8, 8);
    return guid;
}

std::array<std::uint8_t, 16> bytesOf(const KSGuid& guid) {
    std::array<std::uint8_t, 16> bytes{};
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(guid.data1 >> (24 - 8 * i));
    for (int i = 0; i < 2; ++i) {
        bytes[4 + i] = static_cast<std::uint8_t>(guid.data2 >> (8 - 8 * i));
        bytes[6 + i] = static_cast<std::uint8_t>(guid.data3 >> (8 - 8 * i));
    }
    std::memcpy(bytes.data() + 8, guid.data4.data(), 8);
    return bytes;
}

std::uint64_t mixBits(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15ULL;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9ULL;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBULL;
    return value ^ (value >> 31);
}

KSGuid guidFromWords(std::uint64_t high, std::uint64_t low) {
    std::array<std::uint8_t, 16> bytes{};
    for (int i = 0; i < 8; ++i) {
        bytes[i] = static_cast<std::uint8_t>(high >> (8 * i));
        bytes[8 + i] = static_cast<std::uint8_t>(low >> (8 * i));
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the usual variant
    return guidFromBytes(bytes);
}

}  // namespace

bool GuidLess::operator()(const KSGuid& left, const KSGuid& right) const {
    return bytesOf(left) < bytesOf(right);
}

std::string guidText(const KSGuid& guid) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto bytes = bytesOf(guid);
    std::string text(38, '-');
    text.front() = '{';
    text.back() = '}';
    std::size_t at = 1;
    for (const std::uint8_t byte : bytes) {
        if (isDash(at)) ++at;
        text[at++] = kDigits[byte >> 4];
        text[at++] = kDigits[byte & 15];
    }
    return text;
}

std::optional<KSGuid> parseGuid(std::string_view text) {
    if (text.size() != 38 || text.front() != '{' || text.back() != '}') return std::nullopt;
    std::array<std::uint8_t, 16> bytes{};
    std::size_t at = 1;
    for (std::uint8_t& byte : bytes) {
        if (isDash(at) && text[at++] != '-') return std::nullopt;
        const int high = hexDigitValue(text[at]);
        const int low = hexDigitValue(text[at + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        byte = static_cast<std::uint8_t>(high * 16 + low);
        at += 2;
    }
    return guidFromBytes(bytes);
}

KSGuid randomGuid() {
    std::random_device device;
    const auto draw = [&device] { return static_cast<std::uint64_t>(device()) << 32 | device(); };
    return guidFromWords(draw(), draw());
}

KSGuid numberedGuid(std::uint32_t family, std::uint32_t index) {
    const std::uint64_t seed = static_cast<std::uint64_t>(family) << 32 | index;
    return guidFromWords(mixBits(seed), mixBits(~seed));
}

}  // namespace orvc::demo
