#include "demo_server/core/options.h"

#include <gtest/gtest.h>

namespace orvc::demo {
namespace {

TEST(Options, AreReadTogether) {
    const Options options = parseOptions(
        " events=50000 ;devices=7;file=C:\\My Files\\a=b.txt;fire=0;refuse=-5,-30;admin=0;stop-after=1.25;stop-once=3;"
        "slow=2;shuffle=9;mute-files=1;standalone=1;reload-after=0.5;resend=values;incomplete=1;late-members=100;late-"
        "stop=7;faults=11"
        ";trace=t.txt");
    EXPECT_TRUE(options.complaints.empty()) << options.complaints.front();
    ASSERT_TRUE(options.generated);
    EXPECT_EQ(options.generated->events, 50'000u);
    EXPECT_EQ(options.generated->devices, 7u);
    EXPECT_EQ(options.generated->groups, 500u);
    EXPECT_EQ(options.file, "C:\\My Files\\a=b.txt");
    EXPECT_EQ(options.fireInterval, 0u);
    EXPECT_EQ(options.refusals, (std::vector<std::int32_t>{-5, -30}));
    EXPECT_FALSE(options.admin);
    EXPECT_EQ(options.stopAfter, 1250u);
    EXPECT_EQ(options.stopOnce, 3000u);
    EXPECT_EQ(options.slow, 2u);
    EXPECT_EQ(options.shuffleSeed, 9u);
    EXPECT_TRUE(options.muteFiles && options.standalone && options.resendValues && options.incomplete);
    EXPECT_EQ(options.reloadAfter, 500u);
    EXPECT_EQ(options.lateMembers, 100u);
    EXPECT_EQ(options.lateStop, 7u);
    EXPECT_EQ(options.faultSeed, 11u);
    EXPECT_EQ(options.trace, "t.txt");
}

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
