#include "demo_server/core/options.h"

#include <gtest/gtest.h>

namespace orvc::demo {
namespace {

TEST(Options, MalformedItemsChangeNothingAndAreComplainedAbout) {
    for (const char* text :
         {"fire=-1", "fire=1s", "fire=99999999999", "events=2000000", "refuse=-5,", "admin=2", "x"}) {
        const Options options = parseOptions(text);
        EXPECT_EQ(options.complaints.size(), 1u) << text;
        EXPECT_EQ(options.fireInterval, 20'000u) << text;
        EXPECT_FALSE(options.generated || options.stopAfter || options.shuffleSeed || options.resendValues) << text;
        EXPECT_TRUE(options.admin) << text;
    }
}

}  // namespace
}  // namespace orvc::demo
