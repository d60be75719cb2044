#include "support/text.h"

#include <gtest/gtest.h>

namespace orvc {
namespace {

TEST(Text, FillInReadsNoFurtherThanItsValues) {
    const char* const rows[][2] = {
        {"%s of %d", "B%s of -7"},       {"%d%s", "B%s-7"},  // kinds swapped: each value in its own way
        {"%05x|%4u|%s", "B%s|  -7|%s"},  {"%s", "B%s"},
        {"100%% %%s %s", "100% %s B%s"}, {"%n%p%-5d%.3s%l%hd%0000000009d%", "%n%p%-5d%.3s%l%hd%0000000009d%"},
        {"%s %03d %5", "B%s -07 %5"},    {"", ""}};
    for (const auto& [format, filled] : rows)
        EXPECT_EQ(fillIn(format, {"B%s", -7L}), filled) << format;
    EXPECT_EQ(fillIn("%02x %X %5d %05d %s", {10L, 255L, 42L, 42L, 7L}), "0a FF    42 00042 7");
}

}  // namespace
}  // namespace orvc
