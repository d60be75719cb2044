#include "payload/payload_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvc {
namespace {

// Payload texts are ordinary prose with few escapes. So we copy 16 bytes at a time, as one vector, and search all of
// them at once for the first one that cannot just be copied.
using Vector [[gnu::vector_size(16)]] = signed char;
using Halves = std::array<std::uint64_t, 2>;
static_assert(std::endian::native == std::endian::little, "the lowest bits of a half are its first byte");

// The finders set special bytes to all ones and the others to zero.

// The bytes are signed: those from 0x80 are less than ' '.
Vector findToEncode(Vector bytes) {
    return (bytes < ' ') | (bytes == '%') | (bytes == '&') | (bytes == '<') | (bytes == '>');
}

Vector findToDecode(Vector bytes) {
    return (bytes == '%') | (bytes == '&');
}

// Copies vectors while they begin before `last` and `find` marks no byte in them, then the bytes before the first
// marked one.
template <Vector find(Vector)>
void copyPlain(const char*& in, const char* last, char*& out) {
    while (in < last) {
        Vector bytes;
        std::memcpy(&bytes, in, sizeof bytes);
        std::memcpy(out, &bytes, sizeof bytes);
        const Halves marks = std::bit_cast<Halves>(find(bytes));
        if ((marks[0] | marks[1]) != 0) {
            const int bits = marks[0] != 0 ? std::countr_zero(marks[0]) : 64 + std::countr_zero(marks[1]);
            in += bits / 8;
            out += bits / 8;
            return;
        }
        in += sizeof bytes;
        out += sizeof bytes;
    }
}

// The encoding of a byte, padded to a size that is copied without a loop.
struct Encoded {
    std::array<char, 7> text{};
    std::uint8_t length = 0;
};

constexpr std::array<Encoded, 256> makeEncodings() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::array<Encoded, 256> table;
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        const char plain = static_cast<char>(byte);
        const char numbered[] = {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        std::string_view text(&plain, 1);
        if (byte < 0x20) text = {numbered, 3};
        if (byte >= 0x80) text = "%ff";
        if (plain == '&') text = "&amp;";
        if (plain == '<') text = "&lt;";
        if (plain == '>') text = "&gt;";
        if (plain == '%') text = "%%";
        std::copy(text.begin(), text.end(), table[byte].text.begin());
        table[byte].length = static_cast<std::uint8_t>(text.size());
    }
    return table;
}
constexpr std::array<Encoded, 256> kEncodings = makeEncodings();

constexpr std::array<std::uint8_t, 256> makeDigitValues() {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        const std::size_t lower = byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte;
        if (lower >= 'a' && lower <= 'f')
            table[byte] = static_cast<std::uint8_t>(lower - 'a' + 10);
        else if (lower < 'a' || lower > 'z')
            table[byte] = static_cast<std::uint8_t>(lower - '0');
    }
    return table;
}
constexpr std::array<std::uint8_t, 256> kDigitValues = makeDigitValues();

constexpr std::size_t indexOf(char c) {
    return static_cast<unsigned char>(c);
}

bool needsEncoding(char c) {
    return kEncodings[indexOf(c)].length != 1;
}

bool mayBeginEscape(char c) {
    return c == '%' || c == '&';
}

// Each step reads one character or escape at `in`, which is not the end, and writes its translation at `out`.

// Also writes the padding.
void encodeStep(const char*& in, const char*, char*& out) {
    const Encoded& encoded = kEncodings[indexOf(*in++)];
    std::memcpy(out, encoded.text.data(), encoded.text.size());
    out += encoded.length;
}

void decodeStep(const char*& in, const char* end, char*& out) {
    const std::size_t left = static_cast<std::size_t>(end - in);
    const auto sees = [&](const char* text, std::size_t size) {
        return left >= size && std::memcmp(in, text, size) == 0;
    };
    char decoded = *in;
    std::size_t length = 1;
    if (*in == '%' && left >= 2 && in[1] == '%') {
        length = 2;
    } else if (*in == '%' && left >= 3) {
        decoded = static_cast<char>(16 * kDigitValues[indexOf(in[1])] + kDigitValues[indexOf(in[2])]);
        length = 3;
    } else if (*in == '&') {
        if (sees("&amp;", 5)) {
            length = 5;
        } else if (sees("&lt;", 4) || sees("&gt;", 4)) {
            decoded = in[1] == 'l' ? '<' : '>';
            length = 4;
        }
    }
    *out++ = decoded;
    in += length;
}

// Appends `text`, translated by `step`, to `result`. A block on the stack collects the output, so that `result` need
// not be filled with zeros first.
template <Vector find(Vector), bool isSpecial(char), void step(const char*&, const char*, char*&)>
void appendTransformed(std::string_view text, std::string& result) {
    constexpr std::size_t kBlock = 4096;
    // The last vector or step may start just before the end of the block, so it needs space after it.
    char block[kBlock + sizeof(Vector) + sizeof(Encoded)];
    const char* in = text.data();
    const char* const end = in + text.size();
    // From here on, less than a vector is left.
    const char* const tail = text.size() < sizeof(Vector) ? in : end - sizeof(Vector) + 1;
    while (in != end) {
        char* out = block;
        while (in != end && out < block + kBlock) {
            copyPlain<find>(in, in + std::min(tail - in, block + kBlock - out), out);
            if (in == end) break;
            // Escapes often follow each other, as in a line end. Plain bytes also come here if no whole vector is left,
            // or no space for one in the block.
            do {
                step(in, end, out);
            } while (in != end && isSpecial(*in) && out < block + kBlock);
        }
        result.append(block, static_cast<std::size_t>(out - block));
    }
}

}  // namespace

void appendEncodedEventText(std::string_view text, std::string& result) {
    // Enough for two line ends in every 70 characters or so.
    result.reserve(result.size() + text.size() + text.size() / 8);
    appendTransformed<findToEncode, needsEncoding, encodeStep>(text, result);
}

std::string encodeEventText(std::string_view text) {
    std::string result;
    appendEncodedEventText(text, result);
    return result;
}

std::string decodeEventText(std::string_view content) {
    std::string result;
    result.reserve(content.size());
    appendTransformed<findToDecode, mayBeginEscape, decodeStep>(content, result);
    return result;
}

}  // namespace orvc
