// The server on a system whose time stands still until a test moves it; its events are lines of text.
#include "demo_server/core/server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "demo_server/core/built_in_building.h"

namespace orvc::demo {
namespace {

using ::testing::UnorderedElementsAreArray;
using variable_type::kDword;
using variable_type::kString;
using Lines = std::vector<std::string>;

class FakeHost final : public Host {
  public:
    bool claimUser(const std::string& name) override { return claimed = name, true; }
    void releaseUser() override { claimed.clear(); }
    Millis ticks() const override { return now; }
    std::uint32_t utcSeconds() const override { return static_cast<std::uint32_t>(1'700'000'000 + now / 1000); }

    Millis now = 10'000;
    std::string claimed;
};

// Its code, and what a variable is told to be.
std::string describe(std::uint32_t code, const void* data) {
    std::string line = std::to_string(code);
    if (code == event_code::kVariable) {
        const auto& variable = *static_cast<const KSVariableNotification*>(data);
        char type[16];
        std::snprintf(type, sizeof type, " %08X ", variable.type);
        line.append(" ").append(variable.name).append(type);
        line += variable.text != nullptr ? variable.text : std::to_string(variable.number);
    }
    return line;
}

// Two devices, one group of both, and a few variables.
Installation makeSmallInstallation() {
    Installation installation;
    installation.users = defaultUsers();
    installation.devices = {{{2, 0, 0, 0, 0, 1}, "Door"}, {{2, 0, 0, 0, 0, 2}, ""}};
    installation.groups = {{7, "Both", {{2, 0, 0, 0, 0, 1}, {2, 0, 0, 0, 0, 2}}}};
    installation.variables.setDword("\\ORVS\\completeBits", 1);
    installation.variables.setString("\\ORVS\\Schedules\\{1}\\Name", "Nights");
    installation.variables.createKey("\\ORVS\\Events\\{A}");
    installation.variables.setString("\\ORVS\\Events\\{A}\\EventName", "Front door");
    installation.variables.setDword("\\ORVS\\Events\\{A}\\EventTriggerType", 1);
    installation.variables.setDword("\\ORVS\\Events\\{A}\\Disabled", 0);
    installation.variables.setDword("\\ORVS\\Events\\{A}\\completeBits", 1);
    return installation;
}

const Lines kEverything = {
    "104 \\ORVS\\completeBits C0000004 1",
    "104 \\ORVS\\Events\\{A} 80000000 0",
    "104 \\ORVS\\Events\\{A}\\EventName C0000001 Front door",
    "104 \\ORVS\\Events\\{A}\\EventTriggerType C0000004 1",
    "104 \\ORVS\\Events\\{A}\\Disabled C0000004 0",
    "104 \\ORVS\\Events\\{A}\\completeBits C0000004 1",
    "104 \\ORVS\\Schedules\\{1}\\Name C0000001 Nights",
};

class ServerTest : public ::testing::Test {
  protected:
    void makeServer(std::string_view options = "fire=0") {
        server_ = std::make_unique<Server>(makeSmallInstallation(), parseOptions(options), Lines{}, host_);
    }
    std::int32_t logOn() {
        KSSocketAddress address;
        std::memcpy(&address.address, "\x7F\0\0\1", 4);
        bool isAdmin = false;
        return server_->start(address, "admin", "admin", isAdmin);
    }
    void logOnQuietly(std::string_view options = "fire=0") {
        makeServer(options);
        ASSERT_EQ(logOn(), logon_result::kSuccess);
        drain();
    }
    // Everything that is due now.
    Lines drain() {
        Lines lines;
        Batch batch;
        for (server_->takeBatch(batch); !batch.empty(); server_->takeBatch(batch))
            batch.deliver(
                [&](auto code, auto, const void*, const void* data) { lines.push_back(describe(code, data)); },
                [&] { return server_->generation() == batch.generation; });
        return lines;
    }

    FakeHost host_;
    std::unique_ptr<Server> server_;
};

TEST_F(ServerTest, StopForgetsWhatIsPendingAndLetsTheUserGo) {
    makeServer("fire=20;stop-after=3;late-members=50");
    logOn();
    Batch underWay;
    server_->takeBatch(underWay);
    server_->subscribe("\\ORVS\\");
    server_->sendGroupMembers(7);
    EXPECT_EQ(server_->stop(), kDone);
    int delivered = 0;
    underWay.deliver([&](auto...) { ++delivered; }, [&] { return server_->generation() == underWay.generation; });
    EXPECT_EQ(delivered, 0);
    host_.now += 5000;
    EXPECT_EQ(drain(), Lines{"15"});
    EXPECT_EQ(host_.claimed, "");
    EXPECT_EQ(server_->createKey("\\ORVS\\x", true), kRefused);
    EXPECT_EQ(logOn(), logon_result::kSuccess);
}

TEST_F(ServerTest, WritesComeBackAsTheyWereWritten) {
    logOnQuietly();
    server_->subscribe("\\ORVS\\");
    EXPECT_EQ(drain(), kEverything);
    server_->createKey("\\ORVS\\Events\\{B}", true);
    server_->setString("\\ORVS\\Events\\{B}\\EventName", kString, "Roof");
    server_->setDword("\\ORVS\\Events\\{B}\\badData", 0x40000004, 0xFFFFFFFF);
    server_->setString("\\ORVS\\Events\\{B}\\badData", kString, "");
    server_->setString("\\Elsewhere\\x", kString, "not subscribed");
    EXPECT_EQ(drain(), (Lines{"104 \\ORVS\\Events\\{B} 80000000 0", "104 \\ORVS\\Events\\{B}\\EventName C0000001 Roof",
                              "104 \\ORVS\\Events\\{B}\\badData 40000004 4294967295",
                              "104 \\ORVS\\Events\\{B}\\badData C0000001 "}));
}

TEST_F(ServerTest, RemovalTellsEveryValueAndTheKey) {
    logOnQuietly();
    server_->setDword("\\ORVS\\Events\\{AB}\\Disabled", kDword, 1);
    server_->subscribe("\\ORVS\\Events\\");
    drain();
    EXPECT_EQ(server_->createKey("\\ORVS\\Events\\{A}", false), kRefused) << "no backslash at its end";
    EXPECT_EQ(server_->createKey("\\ORVS\\Events\\{A}\\", false), kDone);
    EXPECT_EQ(
        drain(),
        (Lines{"104 \\ORVS\\Events\\{A}\\EventName C1000001 0", "104 \\ORVS\\Events\\{A}\\EventTriggerType C1000004 0",
               "104 \\ORVS\\Events\\{A}\\Disabled C1000004 0", "104 \\ORVS\\Events\\{A}\\completeBits C1000004 0",
               "104 \\ORVS\\Events\\{A} 81000000 0"}));
    server_->subscribe("\\ORVS\\Events\\");
    EXPECT_EQ(drain(), Lines{"104 \\ORVS\\Events\\{AB}\\Disabled C0000004 1"});
}

TEST_F(ServerTest, ChangesUnderWayEndInTheRightState) {
    for (const char* options : {"fire=0", "fire=0;shuffle=3"}) {
        logOnQuietly(options);
        for (int i = 1000; i < 3000; ++i)
            server_->setDword("\\ORVS\\Events\\{" + std::to_string(i) + "}\\x", kDword, 1);
        server_->subscribe("\\ORVS\\");
        Batch batch;
        server_->takeBatch(batch);
        ASSERT_TRUE(batch.full());
        server_->createKey("\\ORVS\\Events\\{2000}\\", false);
        server_->setDword("\\ORVS\\Events\\{2500}\\x", kDword, 2);
        const Lines rest = drain();
        EXPECT_EQ(rest.at(rest.size() - 2), "104 \\ORVS\\Events\\{2000}\\x C1000004 0");
        EXPECT_EQ(rest.back(), "104 \\ORVS\\Events\\{2500}\\x C0000004 2");
    }
}

TEST_F(ServerTest, ASubscriptionCanBeShuffled) {
    logOnQuietly("fire=0;shuffle=5");
    server_->subscribe("\\ORVS\\");
    const Lines shuffled = drain();
    EXPECT_NE(shuffled, kEverything);
    EXPECT_THAT(shuffled, UnorderedElementsAreArray(kEverything));
    server_->subscribe("\\ORVS\\");
    EXPECT_EQ(drain(), shuffled) << "the seed decides";
}

TEST_F(ServerTest, ChangesAreSavedSoonAndTogether) {
    logOnQuietly();
    EXPECT_EQ(server_->takeSave(), std::nullopt);
    server_->setString("\\ORVS\\userName", kString, "first");
    host_.now += 150;
    server_->setString("\\ORVS\\userName", kString, "second");
    drain();
    host_.now += 199;
    EXPECT_EQ(server_->takeDueSave(), std::nullopt);
    EXPECT_EQ(server_->nextWork(), host_.now + 1);
    host_.now += 1;
    const auto text = server_->takeDueSave();
    ASSERT_TRUE(text);
    EXPECT_NE(text->find("string \\ORVS\\userName = second\n"), std::string::npos);
    EXPECT_EQ(server_->takeSave(), std::nullopt);
    server_->saveFailed();
    EXPECT_TRUE(server_->takeSave()) << "offered again";
}

}  // namespace
}  // namespace orvc::demo
