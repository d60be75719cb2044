// The payload files' escapes against plain loops over the bytes.
#include "payload/payload_text.h"

#include "fuzz/input.h"

namespace orvc {
namespace {

std::string encodePlainly(std::string_view text) {
    std::string result;
    for (const char c : text) {
        char number[8];
        std::snprintf(number, sizeof number, "%%%02x", static_cast<unsigned>(c));
        if (static_cast<unsigned char>(c) >= 0x80)
            result += "%ff";
        else if (c < ' ')
            result += number;
        else
            result += c == '%' ? "%%" : c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    }
    return result;
}

int digit(char c) {
    const int lower = c >= 'A' && c <= 'Z' ? c + 32 : static_cast<unsigned char>(c);
    if (lower >= 'a' && lower <= 'z') return lower <= 'f' ? lower - 'a' + 10 : 0;
    return lower - '0';
}

std::string decodePlainly(std::string_view text) {
    constexpr std::string_view entities[][2] = {{"%%", "%"}, {"&amp;", "&"}, {"&lt;", "<"}, {"&gt;", ">"}};
    std::string result;
    while (!text.empty()) {
        const auto* const found =
            std::ranges::find_if(entities, [&](const auto& entity) { return text.starts_with(entity[0]); });
        if (found != std::end(entities)) {
            result += (*found)[1];
            text.remove_prefix((*found)[0].size());
        } else if (text[0] == '%' && text.size() >= 3) {
            result += static_cast<char>(16 * digit(text[1]) + digit(text[2]));
            text.remove_prefix(3);
        } else {
            result += text[0];
            text.remove_prefix(1);
        }
    }
    return result;
}

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    Input input(data, size);
    // Repeated beyond the size of the block that the text is worked on in; in memory of its own size.
    const unsigned times = input.byte() % 16 == 0 ? 1 + input.byte() : 1;
    const std::string_view part = input.rest();
    std::string repeated;
    for (unsigned i = 0; i < times && repeated.size() < 4500; ++i)
        repeated += part;
    const std::vector<char> exact(repeated.begin(), repeated.end());
    const std::string_view text(exact.data(), exact.size());

    const std::string encoded = encodeEventText(text);
    require(encoded == encodePlainly(text), "a text is encoded as a plain loop does");
    require(decodeEventText(text) == decodePlainly(text), "a text is decoded as a plain loop does");
    std::string known(text);
    std::ranges::replace_if(
        known, [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '\xFF');
    require(decodeEventText(encoded) == known, "an encoded text decodes to itself");
    return 0;
}
