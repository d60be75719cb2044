#include "server_fixture.h"

namespace orvc::demo {
namespace {

using Lines = std::vector<std::string>;

const Lines kDirectory = {"1#1 02:00:00:00:00:01 'Door' n=1", "1#2 02:00:00:00:00:02 '' n=1", "80#7 Both members=2",
                          "83#7 104 bytes", "70 Reception"};

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

class ServerLogon : public ServerFixture {};

TEST_F(ServerLogon, AnswersByNamePasswordAndAddress) {
    struct Case {
        const char* name;
        const char* password;
        std::array<std::uint8_t, 4> address;
        std::uint16_t family;
        std::int32_t result;
        bool isAdmin;
    };
    const Case cases[] = {
        {"admin", "admin", {127, 0, 0, 1}, 2, 0, true},
        {"operator", "operator", {127, 9, 8, 7}, 2, 0, false},
        {"admin", "operator", {127, 0, 0, 1}, 2, -30, false},
        {"Admin", "admin", {127, 0, 0, 1}, 2, -30, false},
        {"", "", {127, 0, 0, 1}, 2, -30, false},
        {"admin", "admin", {10, 0, 0, 127}, 2, -2, false},
        {"admin", "admin", {127, 0, 0, 1}, 23, -2, false},
    };
    for (const Case& c : cases) {
        makeServer(makeSmallInstallation());
        isAdmin_ = false;
        EXPECT_EQ(logOn(c.name, c.password, c.address, c.family), c.result) << c.name;
        EXPECT_EQ(isAdmin_, c.isAdmin) << c.name;
        EXPECT_EQ(drain().empty(), c.result != 0) << c.name;
    }
}

TEST_F(ServerLogon, TellsTheDirectoryAndThenThatItIsReady) {
    makeServer(makeSmallInstallation());
    logOn();
    EXPECT_EQ(drain(), (Lines{"30 admin", "32 1700000010"} + kDirectory + Lines{"100"}));
    EXPECT_EQ(host_.claimed, "admin");
    EXPECT_EQ(logOn(), logon_result::kAlreadyLoggedIn);
    EXPECT_TRUE(drain().empty());
}

TEST_F(ServerLogon, RefusesAUserWhoIsLoggedOnElsewhere) {
    makeServer(makeSmallInstallation());
    host_.userIsElsewhere = true;
    EXPECT_EQ(logOn(), logon_result::kAlreadyLoggedIn);
    host_.userIsElsewhere = false;
    EXPECT_EQ(logOn(), logon_result::kSuccess);
}

TEST_F(ServerLogon, StopForgetsWhatIsPendingAndLetsTheUserGo) {
    makeServer(makeSmallInstallation(), "fire=20;stop-after=3;late-members=50");
    logOn();
    Batch underWay;
    server().takeBatch(underWay);
    server().subscribe("\\ORVS\\");
    server().sendGroupMembers(7);
    EXPECT_EQ(server().stop(), kDone);
    int delivered = 0;
    underWay.deliver([&](auto...) { ++delivered; }, [&] { return server().generation() == underWay.generation; });
    EXPECT_EQ(delivered, 0);
    EXPECT_EQ(pass(5000), Lines{"15"});
    EXPECT_EQ(host_.claimed, "");
    EXPECT_EQ(server().stop(), kDone);
    EXPECT_TRUE(drain().empty()) << "a second stop says nothing";
    EXPECT_EQ(logOn(), logon_result::kSuccess);
}

TEST_F(ServerLogon, CloseSaysNothing) {
    makeServer(makeSmallInstallation());
    logOn();
    server().close();
    EXPECT_TRUE(drain().empty());
    EXPECT_EQ(host_.claimed, "");
}

TEST_F(ServerLogon, RefusesEveryCallBeforeAndAfter) {
    makeServer(makeSmallInstallation());
    const auto refusals = [&] {
        KSGuid guid;
        return server().createGroup({}) + server().deleteGroup(7) + server().sendGroupMembers(7) +
               server().sendMessages() + server().resendSettings() + server().createKey("\\ORVS\\x", true) +
               server().subscribe("\\ORVS\\") + server().setString("\\ORVS\\x", variable_type::kString, "") +
               server().setDword("\\ORVS\\x", variable_type::kDword, 1) + server().createFile(guid) +
               server().readFile(guid) + server().writeFile(guid, "") + server().deleteFile(guid);
    };
    EXPECT_EQ(refusals(), 13 * kRefused);
    logOn();
    server().stop();
    drain();
    EXPECT_EQ(refusals(), 13 * kRefused);
    EXPECT_EQ(server().nextWork(), std::nullopt) << "nothing was changed, nothing is to be sent or saved";
}

TEST_F(ServerLogon, AnswersTheFirstLogonsAsTheOptionsSay) {
    makeServer(makeSmallInstallation(), "refuse=-5,-30;admin=0;nonsense=1;fire=0");
    EXPECT_EQ(logOn(), -5);
    EXPECT_EQ(logOn(), -30);
    EXPECT_EQ(logOn(), 0);
    EXPECT_FALSE(isAdmin_);
    EXPECT_EQ(drain()[2], "0 Demo server: unknown option 'nonsense=1' is ignored");
}

TEST_F(ServerLogon, StopsAndReloadsByItselfWhenAsked) {
    struct Case {
        const char* options;
        Lines first;
        Lines second;
    };
    const Case cases[] = {
        {"fire=0;stop-after=2", {"15"}, {"15"}},
        {"fire=0;stop-once=2.5", {"15"}, {}},
        {"fire=0;reload-after=1", {"101"}, {"101"}},
        {"fire=0;reload-after=1;stop-once=2", {"101", "15"}, {"101"}},
    };
    for (const Case& c : cases) {
        makeServer(makeSmallInstallation(), c.options);
        logOnQuietly();
        EXPECT_EQ(pass(5000), c.first) << c.options;
        server().stop();
        logOnQuietly();
        EXPECT_EQ(pass(5000), c.second) << c.options;
    }
}

TEST_F(ServerLogon, AnswersAboutGroupsAndMessages) {
    makeServer(makeSmallInstallation());
    logOnQuietly();
    EXPECT_EQ(server().createGroup({}), kDone);
    EXPECT_EQ(server().sendGroupMembers(7), kDone);
    EXPECT_EQ(server().deleteGroup(7), kDone);
    EXPECT_EQ(server().sendMessages(), kDone);
    EXPECT_EQ(server().sendGroupMembers(8), kRefused);
    EXPECT_EQ(drain(), (Lines{"81#7 02:00:00:00:00:01", "81#7 02:00:00:00:00:02", "99 chime=Three tones", "99 ="}));
}

TEST_F(ServerLogon, LateMembersHoldUpNothingElse) {
    makeServer(makeSmallInstallation(), "fire=0;late-members=200");
    logOnQuietly();
    server().sendGroupMembers(7);
    server().sendMessages();
    EXPECT_EQ(pass(190).size(), 2u);
    EXPECT_EQ(pass(10), (Lines{"81#7 02:00:00:00:00:01", "81#7 02:00:00:00:00:02"}));
}

TEST_F(ServerLogon, ResendsTheDirectory) {
    makeServer(makeSmallInstallation());
    logOnQuietly();
    server().resendSettings();
    EXPECT_EQ(drain(), kDirectory + Lines{"100"});

    makeServer(makeSmallInstallation(), "fire=0;resend=values");
    logOnQuietly();
    server().resendSettings();
    const Lines lines = drain();
    ASSERT_EQ(lines.size(), kDirectory.size() + 9);
    EXPECT_EQ(lines.back(), "104 \\ORVS\\Schedules\\{1}\\Name C0000001 'Nights'");
}

}  // namespace
}  // namespace orvc::demo
