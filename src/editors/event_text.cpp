#include "editors/event_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvc {
namespace {

// Payload texts are ordinary prose with an escape here and there. So we copy a machine word at a time and ask it, with
// a few operations on all its bytes together, for the first byte that needs more than copying.
using Word = std::size_t;
constexpr std::size_t kWordSize = sizeof(Word);
static_assert(std::endian::native == std::endian::little, "the lowest bits of a word are its first byte");

constexpr Word repeat(unsigned char byte) {
    return ~Word{0} / 0xFF * byte;
}

// The finders return a word whose lowest set bit stands in the first special byte; 0 when there is none. Higher bits,
// and bytes that are found needlessly, mean nothing: the step that follows looks at the byte itself.

// Subtracting sets the top bit of a byte that is too small, and in bytes above it by the borrow.
Word findToEncode(Word word) {
    const Word angles = (word | repeat('<' ^ '>')) ^ repeat('>');
    // "%" and "&" are neighbours: one more, and they differ in the lowest bit. Only 0xFF carries, and is special
    // itself.
    const Word percents = ((word + repeat(1)) | repeat(1)) ^ repeat('&' + 1);
    return ((word - repeat(' ')) | (angles - repeat(1)) | (percents - repeat(1)) | word) & repeat(0x80);
}

Word findToDecode(Word word) {
    const Word percents = word ^ repeat('%');
    const Word ampersands = word ^ repeat('&');
    return (((percents - repeat(1)) & ~percents) | ((ampersands - repeat(1)) & ~ampersands)) & repeat(0x80);
}

// A byte's written form, padded to a size that is copied without a loop.
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

// The steps read one character or escape at `in`, which is not the end, and write what stands for it at `out`.

// Writes up to 7 bytes more than it says.
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

// Appends what `step` makes of `text` to `result`. What is written gathers in a block on the stack, so that the result
// is never filled with zeros first.
template <Word find(Word), void step(const char*&, const char*, char*&)>
void appendTransformed(std::string_view text, std::string& result) {
    constexpr std::size_t kBlock = 4096;
    constexpr std::size_t kLongestStep = 5;
    // A step or a word may begin just before the block is full.
    char block[(kBlock + kWordSize) * kLongestStep + kWordSize];
    const char* in = text.data();
    const char* const end = in + text.size();
    while (in != end) {
        const char* const stop = in + std::min<std::size_t>(kBlock, end - in);
        char* out = block;
        while (in < stop) {
            if (static_cast<std::size_t>(end - in) >= kWordSize) {
                Word word;
                std::memcpy(&word, in, kWordSize);
                std::memcpy(out, &word, kWordSize);
                const Word found = find(word);
                const std::size_t plain = found ? std::countr_zero(found) / 8u : kWordSize;
                in += plain;
                out += plain;
                if (!found) continue;
            }
            step(in, end, out);
        }
        result.append(block, static_cast<std::size_t>(out - block));
    }
}

}  // namespace

void appendEncodedEventText(std::string_view text, std::string& result) {
    // Room for two line ends in every 70 characters or so.
    result.reserve(result.size() + text.size() + text.size() / 8);
    appendTransformed<findToEncode, encodeStep>(text, result);
}

std::string encodeEventText(std::string_view text) {
    std::string result;
    appendEncodedEventText(text, result);
    return result;
}

std::string decodeEventText(std::string_view content) {
    std::string result;
    result.reserve(content.size());
    appendTransformed<findToDecode, decodeStep>(content, result);
    return result;
}

}  // namespace orvc
