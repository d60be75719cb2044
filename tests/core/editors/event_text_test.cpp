#include "editors/event_text.h"

#include <gtest/gtest.h>

#include <random>

namespace orvc {
namespace {

using namespace std::string_literals;

// The rules one byte at a time.
std::string encodeSlowly(const std::string& text) {
    std::string result;
    for (const char c : text) {
        char number[16];
        std::snprintf(number, sizeof number, "%%%02x", static_cast<unsigned>(static_cast<signed char>(c)));
        if (static_cast<signed char>(c) < 0x20)
            result.append(number, 3);
        else if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '%')
            result += "%%";
        else
            result += c;
    }
    return result;
}

std::string decodeSlowly(const std::string& content) {
    const auto digit = [](char c) {
        const int lower = c >= 'A' && c <= 'Z' ? c + 32 : c;
        if (lower >= 'a' && lower <= 'z') return lower <= 'f' ? lower - 'a' + 10 : 0;
        return lower - '0';
    };
    std::string result;
    for (std::size_t i = 0; i < content.size();) {
        const std::string_view rest = std::string_view(content).substr(i);
        if (rest.starts_with("%%")) {
            result += '%', i += 2;
        } else if (rest[0] == '%' && rest.size() >= 3) {
            result += static_cast<char>(16 * digit(rest[1]) + digit(rest[2])), i += 3;
        } else if (rest.starts_with("&amp;")) {
            result += '&', i += 5;
        } else if (rest.starts_with("&lt;")) {
            result += '<', i += 4;
        } else if (rest.starts_with("&gt;")) {
            result += '>', i += 4;
        } else {
            result += rest[0], i += 1;
        }
    }
    return result;
}

std::string randomText(std::mt19937& random, std::size_t length, std::size_t specialIn) {
    constexpr std::string_view kSpecial = "%%%&&<>\r\n;ampltg0f\0\x1F\x20\x7F\x80\xFF$'=?@";
    std::string text(length, '\0');
    for (char& c : text)
        c = random() % specialIn == 0 ? kSpecial[random() % kSpecial.size()] : static_cast<char>(random());
    return text;
}

// Lengths around words and blocks, from every alignment, dense and sparse in escapes.
TEST(EventText, BothWaysAgreeWithTheRulesByteByByte) {
    std::mt19937 random(4'711);
    for (const std::size_t base : {0u, 8u, 64u, 4088u, 8190u, 20'000u}) {
        for (int round = 0; round < (base < 100 ? 400 : 20); ++round) {
            const std::string text = randomText(random, base + random() % 20, 1 + random() % 40);
            const std::string aligned = text.substr(std::min(text.size(), random() % 8));
            const std::string encoded = encodeEventText(aligned);
            ASSERT_EQ(encoded, encodeSlowly(aligned));
            ASSERT_EQ(decodeEventText(aligned), decodeSlowly(aligned));
            std::string expected = aligned;
            for (char& c : expected)
                if (static_cast<unsigned char>(c) >= 0x80) c = '\xFF';
            ASSERT_EQ(decodeEventText(encoded), expected);
        }
    }
    // Escapes across the ends of words and blocks.
    for (std::size_t before = 4070; before < 4110; ++before) {
        for (const char* tail : {"&amp;&lt;%0d%%x", "%", "%1", "&am", "&lt"}) {
            const std::string content = std::string(before, 'x') + tail;
            ASSERT_EQ(decodeEventText(content), decodeSlowly(content)) << before << tail;
        }
    }
    const std::string worst(10'000, '&');
    EXPECT_EQ(encodeEventText(worst), encodeSlowly(worst));
}

}  // namespace
}  // namespace orvc
