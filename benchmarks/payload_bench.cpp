// payload_bench: an Event's payload file. Escaping and unescaping against a plain loop with one branch per case;
// reading the file against what pugixml needs to parse the same bytes.
#include <cstdlib>
#include <pugixml.hpp>
#include <string>

#include "bench.h"
#include "event_mirror.h"
#include "payload/payload_file.h"

namespace orvc::bench {
namespace {

// Prose: lines of some seventy characters, and here and there a character that has to be escaped.
std::string makeOrdinaryText(std::size_t size) {
    static constexpr std::string_view kLines[] = {
        "Attention please. The delivery entrance at the north side is closed until",
        "five in the afternoon; deliveries for the laboratory & the kitchen go through",
        "gate 4. Visitors are asked to wait at the reception until somebody comes to",
        "meet them. In an emergency leave the building by the nearest exit, help",
        "others where you can, and gather on the lawn in front of the main building.",
    };
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i)
        text.append(kLines[i % std::size(kLines)]).append("\r\n");
    text.resize(size);
    return text;
}

std::string plainEncode(std::string_view text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string result;
    result.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        const auto value = static_cast<signed char>(c);
        if (value < 0) {
            result += "%ff";
        } else if (value < ' ') {
            result += '%';
            result += kDigits[value >> 4];
            result += kDigits[value & 15];
        } else if (c == '&') {
            result += "&amp;";
        } else if (c == '<') {
            result += "&lt;";
        } else if (c == '>') {
            result += "&gt;";
        } else if (c == '%') {
            result += "%%";
        } else {
            result += c;
        }
    }
    return result;
}

int digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    return (c | 32) - 'a' + 10;
}

std::string plainDecode(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 1 < text.size() && text[i + 1] == '%') {
            result += '%';
            ++i;
        } else if (text[i] == '%' && i + 2 < text.size()) {
            result += static_cast<char>(16 * digit(text[i + 1]) + digit(text[i + 2]));
            i += 2;
        } else if (text.substr(i, 5) == "&amp;") {
            result += '&';
            i += 4;
        } else if (text.substr(i, 4) == "&lt;") {
            result += '<';
            i += 3;
        } else if (text.substr(i, 4) == "&gt;") {
            result += '>';
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

// Seconds a call of both, taken in turns.
template <typename Subject, typename Reference>
void compare(const std::string& name, int repeats, const Subject& subject, const Reference& reference) {
    double ours = 0;
    double theirs = 0;
    for (int i = 0; i < repeats; ++i) {
        theirs += measureProcessor(reference);
        ours += measureProcessor(subject);
    }
    report((name + ".ours").c_str(), ours / repeats);
    report((name + ".reference").c_str(), theirs / repeats);
}

void escapeAndUnescape(std::size_t size, int repeats, const std::string& name) {
    const std::string text = makeOrdinaryText(size);
    const std::string encoded = plainEncode(text);
    if (encodeEventText(text) != encoded || decodeEventText(encoded) != text || plainDecode(encoded) != text)
        std::abort();
    compare(
        "payload.escape." + name, repeats, [&] { keep(encodeEventText(text)); }, [&] { keep(plainEncode(text)); });
    compare(
        "payload.unescape." + name, repeats, [&] { keep(decodeEventText(encoded)); },
        [&] { keep(plainDecode(encoded)); });
}

void readFile(std::size_t size, int repeats, const std::string& name) {
    EventMirror surroundings;
    const std::string text = makeOrdinaryText(size);
    const std::string file = formatTtsFile(text);
    if (getTtsMessage(file, surroundings.log) != text) std::abort();
    compare(
        "payload.read." + name, repeats, [&] { keep(getTtsMessage(file, surroundings.log)); },
        [&] {
            pugi::xml_document document;
            keep(document.load_buffer(file.data(), file.size()));
        });
}

}  // namespace
}  // namespace orvc::bench

int main() {
    using namespace orvc::bench;
    constexpr std::size_t kMegabyte = 1'000'000;
    escapeAndUnescape(kMegabyte, 20, "1mb");
    escapeAndUnescape(50 * kMegabyte, 2, "50mb");
    readFile(3'000, 2'000, "3kb");
    readFile(kMegabyte, 50, "1mb");
}
