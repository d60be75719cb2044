// The payload files' escapes: any text decodes, and comes back from its encoding.
#include "editors/event_text.h"

#include "fuzz/input.h"

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

    decodeEventText(text);
    const std::string encoded = encodeEventText(text);
    require(std::ranges::all_of(encoded, [](char c) { return c >= ' '; }), "an encoded text has no control characters");
    require(decodeEventText(encoded) == withoutLoss(text), "an encoded text decodes to itself");
    return 0;
}
