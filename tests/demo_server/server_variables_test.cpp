#include <algorithm>

#include "demo_server/core/installation_text.h"
#include "server_fixture.h"

namespace orvc::demo {
namespace {

using Lines = std::vector<std::string>;

const Lines kEverything = {
    "104 \\ORVS\\ 80000000 0",
    "104 \\ORVS\\completeBits C0000004 1",
    "104 \\ORVS\\userName C0000001 ''",
    "104 \\ORVS\\Events\\{A} 80000000 0",
    "104 \\ORVS\\Events\\{A}\\EventName C0000001 'Front door'",
    "104 \\ORVS\\Events\\{A}\\EventTriggerType C0000004 1",
    "104 \\ORVS\\Events\\{A}\\Disabled C0000004 0",
    "104 \\ORVS\\Events\\{A}\\completeBits C0000004 1",
    "104 \\ORVS\\Schedules\\{1}\\Name C0000001 'Nights'",
};

Lines sorted(Lines lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

class ServerVariables : public ServerFixture {
  protected:
    void subscribed(std::string_view options = "fire=0") {
        makeServer(makeSmallInstallation(), options);
        logOnQuietly();
        server().subscribe("\\ORVS\\");
    }
};

TEST_F(ServerVariables, SubscriptionTellsEverythingBelowThePath) {
    subscribed();
    EXPECT_EQ(drain(), kEverything);
    server().subscribe("\\ORVS\\Schedules");
    EXPECT_EQ(drain(), Lines{kEverything.back()});
    server().subscribe("\\ORVS\\Sched");
    EXPECT_TRUE(drain().empty());
}

TEST_F(ServerVariables, WritesComeBackAsTheyWereWritten) {
    subscribed();
    drain();
    server().createKey("\\ORVS\\Events\\{B}", true);
    server().setString("\\ORVS\\Events\\{B}\\EventName", variable_type::kString, "Roof");
    server().setDword("\\ORVS\\Events\\{B}\\badData", 0x40000004, 0xFFFFFFFF);
    server().setString("\\ORVS\\Events\\{B}\\badData", variable_type::kString, "");
    server().setString("\\Elsewhere\\x", variable_type::kString, "not subscribed");
    EXPECT_EQ(drain(),
              (Lines{"104 \\ORVS\\Events\\{B} 80000000 0", "104 \\ORVS\\Events\\{B}\\EventName C0000001 'Roof'",
                     "104 \\ORVS\\Events\\{B}\\badData 40000004 4294967295",
                     "104 \\ORVS\\Events\\{B}\\badData C0000001 ''"}));
    server().subscribe("\\ORVS\\Events\\{B}\\");
    EXPECT_EQ(drain().size(), 3u) << "one value per name: the last one written";
}

TEST_F(ServerVariables, RemovalTellsEveryValueAndTheKey) {
    subscribed();
    drain();
    server().setDword("\\ORVS\\Events\\{AB}\\Disabled", variable_type::kDword, 1);
    server().setDword("\\ORVS\\Events\\{A}\\below\\x", variable_type::kDword, 1);
    drain();
    EXPECT_EQ(server().createKey("\\ORVS\\Events\\{A}", false), kRefused) << "no backslash at its end";
    EXPECT_EQ(server().createKey("\\ORVS\\Events\\{C}\\", false), kRefused);
    EXPECT_EQ(server().createKey("\\ORVS\\Events\\{A}\\", false), kDone);
    EXPECT_EQ(
        drain(),
        (Lines{"104 \\ORVS\\Events\\{A}\\EventName C1000001 0", "104 \\ORVS\\Events\\{A}\\EventTriggerType C1000004 0",
               "104 \\ORVS\\Events\\{A}\\Disabled C1000004 0", "104 \\ORVS\\Events\\{A}\\completeBits C1000004 0",
               "104 \\ORVS\\Events\\{A} 81000000 0", "104 \\ORVS\\Events\\{A}\\below\\x C1000004 0"}));
    server().subscribe("\\ORVS\\Events\\");
    EXPECT_EQ(drain(), Lines{"104 \\ORVS\\Events\\{AB}\\Disabled C0000004 1"});
}

TEST_F(ServerVariables, ChangesUnderWayEndInTheRightState) {
    for (const char* options : {"fire=0", "fire=0;shuffle=3"}) {
        makeServer(makeSmallInstallation(), options);
        logOnQuietly();
        for (int i = 1000; i < 3000; ++i) {
            server().setDword("\\ORVS\\Events\\{" + std::to_string(i) + "}\\x", variable_type::kDword, 1);
        }
        server().subscribe("\\ORVS\\");
        Batch batch;
        server().takeBatch(batch);
        ASSERT_TRUE(batch.full());
        server().createKey("\\ORVS\\Events\\{2000}\\", false);
        server().setDword("\\ORVS\\Events\\{2500}\\x", variable_type::kDword, 2);
        const Lines rest = drain();
        EXPECT_GT(rest.size() + batch.size(), 2000u);
        EXPECT_EQ(rest.at(rest.size() - 2), "104 \\ORVS\\Events\\{2000}\\x C1000004 0");
        EXPECT_EQ(rest.back(), "104 \\ORVS\\Events\\{2500}\\x C0000004 2");
    }
}

TEST_F(ServerVariables, SubscriptionCanBeShuffledSlowedAndIncomplete) {
    subscribed("fire=0;shuffle=5");
    const Lines shuffled = drain();
    EXPECT_NE(shuffled, kEverything);
    EXPECT_EQ(sorted(shuffled), sorted(kEverything));
    server().subscribe("\\ORVS\\");
    EXPECT_EQ(drain(), shuffled) << "the seed decides";

    for (const char* options : {"fire=0;slow=20", "fire=0;slow=20;shuffle=1"}) {
        subscribed(options);
        EXPECT_TRUE(drain().empty());
        EXPECT_EQ(pass(20).size(), 1u);
        EXPECT_EQ(pass(20).size(), 1u);
        EXPECT_EQ(pass(200).size(), kEverything.size() - 2);
    }

    subscribed("fire=0;incomplete=1");
    Lines incomplete = kEverything;
    incomplete.erase(incomplete.begin() + 1);
    EXPECT_EQ(drain(), incomplete);
}

TEST_F(ServerVariables, EventsFireNowAndThen) {
    subscribed("fire=1000");
    drain();
    server().setDword("\\ORVS\\Events\\{B}\\completeBits", variable_type::kDword, 1);  // too little to fire
    drain();
    EXPECT_EQ(pass(1000), (Lines{"104 \\ORVS\\Events\\{A}\\lastChecked C0000004 1700000011",
                                 "104 \\ORVS\\Events\\{A}\\lastTriggered C0000004 1700000011"}));
    server().setDword("\\ORVS\\Events\\{A}\\Disabled", variable_type::kDword, 1);
    drain();
    EXPECT_TRUE(pass(5000).empty());
    server().setDword("\\ORVS\\Events\\{A}\\Disabled", variable_type::kDword, 0);
    server().setDword("\\ORVS\\Events\\{A}\\EventTriggerType", variable_type::kDword, 9);
    drain();
    EXPECT_TRUE(pass(5000).empty()) << "the time of day does not come at random";
}

TEST_F(ServerVariables, ChangesAreSavedSoonAndTogether) {
    subscribed();
    drain();
    EXPECT_EQ(server().takeSave(), std::nullopt);
    server().setString("\\ORVS\\userName", variable_type::kString, "first");
    host_.now += 150;
    server().setString("\\ORVS\\userName", variable_type::kString, "second");
    drain();
    host_.now += 199;
    EXPECT_EQ(server().takeDueSave(), std::nullopt);
    EXPECT_EQ(server().nextWork(), host_.now + 1);
    host_.now += 1;
    const auto text = server().takeDueSave();
    ASSERT_TRUE(text);
    EXPECT_NE(text->find("string \\ORVS\\userName = second\n"), std::string::npos);
    EXPECT_EQ(server().takeSave(), std::nullopt);

    server().saveFailed();
    EXPECT_TRUE(server().takeSave()) << "offered again";

    const Millis start = host_.now;
    while (!server().takeDueSave()) {
        server().setDword("\\ORVS\\smtpPort", variable_type::kDword, 25);
        host_.now += 100;
        ASSERT_LE(host_.now, start + 2100) << "never saved while things keep changing";
    }
}

TEST_F(ServerVariables, AGeneratedInstallationIsNeverSaved) {
    makeServer(makeSmallInstallation(), "events=1;fire=0");
    logOnQuietly();
    server().setDword("\\ORVS\\smtpPort", variable_type::kDword, 25);
    EXPECT_EQ(server().takeSave(), std::nullopt);
}

class ServerFiles : public ServerFixture {};

TEST_F(ServerFiles, AreMadeWrittenReadAndDeleted) {
    makeServer(makeSmallInstallation());
    logOnQuietly();
    KSGuid file;
    EXPECT_EQ(server().writeFile(file, "x"), kRefused);
    EXPECT_EQ(server().readFile(file), kRefused);
    EXPECT_EQ(server().deleteFile(file), kRefused);
    ASSERT_EQ(server().createFile(file), kDone);
    const std::string name = "121 " + guidText(file) + " ";
    EXPECT_EQ(server().readFile(file), kDone);
    EXPECT_EQ(drain(), Lines{name});

    const std::string thousand(1000, 'a');
    server().writeFile(file, thousand + "b");
    server().readFile(file);
    server().writeFile(file, thousand);
    server().readFile(file);
    server().deleteFile(file);
    EXPECT_EQ(drain(), (Lines{name + thousand, name + "b", name, name + thousand, name}))
        << "a read keeps the bytes that it began with";
    EXPECT_EQ(server().readFile(file), kRefused);
}

TEST_F(ServerFiles, MuteReadsAreAcceptedAndNotAnswered) {
    makeServer(makeSmallInstallation(), "fire=0;mute-files=1");
    logOnQuietly();
    KSGuid file;
    server().createFile(file);
    EXPECT_EQ(server().readFile(file), kDone);
    EXPECT_TRUE(drain().empty());
}

}  // namespace
}  // namespace orvc::demo
