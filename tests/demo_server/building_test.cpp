// What the two made-up installations promise.
#include <gtest/gtest.h>

#include <set>

#include "demo_server/core/built_in_building.h"
#include "demo_server/core/event_choice.h"
#include "demo_server/core/generated_installation.h"
#include "demo_server/core/payload.h"
#include "demo_server/core/records.h"
#include "demo_server/core/text_codec.h"

namespace orvc::demo {
namespace {

constexpr std::uint32_t kNow = 1'700'000'000;
constexpr const char* kNoDevice = "00:00:00:00:00:00";

// The Events of an installation, checked one by one against the rest of it.
class EventCheck {
  public:
    explicit EventCheck(const Installation& installation) : installation_(installation) {
        for (const Device& device : installation.devices)
            devices_.insert(macText(device.mac));
        for (const Group& group : installation.groups)
            groups_.insert(group.key);
        for (const AudioMessage& message : installation.messages)
            messages_.insert(message.key);
        for (const auto& [path, key] : installation.variables.keys()) {
            if (path.starts_with("\\ORVS\\Schedules\\{"))
                schedules_.insert(installation.variables.find(key, "Key")->text);
        }
        schedules_.insert("{Default}");
        for (const auto& [path, key] : installation.variables.keys()) {
            if (path.starts_with("\\ORVS\\Events\\{")) check(path, key);
        }
    }

    int events = 0;
    int disabled = 0;
    int withMissingGroup = 0;
    int neverFired = 0;
    std::set<std::uint32_t> triggers;
    std::set<std::uint32_t> responses;

  private:
    void check(const std::string& path, const VariableTree::Key& key) {
        SCOPED_TRACE(path);
        ++events;
        EXPECT_TRUE(key.created);
        const bool bad = installation_.variables.find(key, "badData") != nullptr;
        EXPECT_EQ(key.values.size(), bad ? 19u : 18u);
        EXPECT_TRUE(parseGuid(path.substr(13, path.size() - 14)));
        key_ = &key;
        const std::uint32_t trigger = number("EventTriggerType");
        const std::uint32_t response = number("EventResponseType");
        triggers.insert(trigger);
        responses.insert(response);
        disabled += number("Disabled") != 0;
        neverFired += number("lastTriggered") == 0;
        withMissingGroup += bad;
        EXPECT_EQ(number("completeBits"), 1u);
        EXPECT_TRUE(schedules_.contains(text("ScheduleKey")));
        checkPlace("TriggerDeviceMAC", "TriggerGroupKey", trigger < 8, bad);
        checkPlace("ResponseDeviceMAC", "ResponseGroupKey", response != 4, false);
        EXPECT_EQ(messages_.contains(text("MessageKey")), response == 3 || response == 6);
        EXPECT_EQ(!text("TtsFilename").empty(), response == 5);
        const auto file = parseGuid(text("FileGUID"));
        EXPECT_EQ(file.has_value(), response == 4 || response == 6);
        if (file) checkPayload(*file, response == 4 ? "\t<Email " : "\t<TTS ");
    }

    // Exactly one of device and group, or neither when no place applies.
    void checkPlace(const char* deviceField, const char* groupField, bool applies, bool groupIsMissing) {
        const bool hasDevice = text(deviceField) != kNoDevice;
        const bool hasGroup = !text(groupField).empty();
        EXPECT_EQ(hasDevice + hasGroup, applies ? 1 : 0) << deviceField;
        EXPECT_TRUE(!hasDevice || devices_.contains(text(deviceField)));
        EXPECT_EQ(hasGroup && !groups_.contains(text(groupField)), groupIsMissing) << text(groupField);
    }

    void checkPayload(const KSGuid& file, const char* element) {
        const auto found = installation_.files.find(file);
        ASSERT_NE(found, installation_.files.end());
        EXPECT_NE(found->second->find(element), std::string::npos);
    }

    std::uint32_t number(const char* field) const { return installation_.variables.find(*key_, field)->number; }
    std::string text(const char* field) const { return installation_.variables.find(*key_, field)->text; }

    const Installation& installation_;
    const VariableTree::Key* key_ = nullptr;
    std::set<std::string> devices_, groups_, messages_, schedules_;
};

TEST(BuiltInBuilding, ShowsEveryTriggerAndResponse) {
    const Installation building = makeBuiltInBuilding(kNow);
    const EventCheck check(building);
    EXPECT_EQ(check.events, 20);
    EXPECT_EQ(check.triggers, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(check.responses, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(check.disabled, 1);
    EXPECT_EQ(check.withMissingGroup, 1);
    EXPECT_GT(check.neverFired, 0);
    EXPECT_LT(check.neverFired, 10);
    EXPECT_EQ(building.files.size(), 7u);
    EXPECT_EQ(building.devices.size(), 24u);
    EXPECT_EQ(building.groups.size(), 6u);
    EXPECT_EQ(building.messages.size(), 8u);
}

TEST(GeneratedInstallation, IsWholeAtEverySize) {
    for (const GeneratedSize& size :
         {GeneratedSize{0, 10, 6}, GeneratedSize{1, 1, 0}, GeneratedSize{500, 50, 6}, GeneratedSize{200, 3, 40}}) {
        const Installation generated = makeGeneratedInstallation(size, kNow);
        const EventCheck check(generated);
        EXPECT_EQ(check.events, static_cast<int>(size.events));
        EXPECT_EQ(check.withMissingGroup, 0);
        EXPECT_EQ(generated.devices.size(), size.devices);
        EXPECT_EQ(generated.groups.size(), size.groups);
    }
}

TEST(EventChoice, ComesRoundToEveryEventThatCanHappen) {
    const Installation building = makeBuiltInBuilding(kNow);
    std::mt19937 random(1);
    std::set<std::string> chosen;
    for (int i = 0; i < 5000; ++i) {
        const auto path = chooseEventToFire(building.variables, random);
        ASSERT_TRUE(path);
        chosen.insert(*path);
        const auto& key = building.variables.keys().find(*path)->second;
        EXPECT_EQ(building.variables.find(key, "Disabled")->number, 0u);
        EXPECT_LT(building.variables.find(key, "EventTriggerType")->number, 8u);
        EXPECT_EQ(building.variables.find(key, "badData"), nullptr);
    }
    EXPECT_EQ(chosen.size(), 14u);
}

TEST(Payload, IsWrittenByteForByte) {
    const std::string opening = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<ORVSEventFile>\r\n";
    EXPECT_EQ(makeSpokenTextPayload("a<b & 100%\r\n\"c\">"),
              opening +
                  "\t<TTS voice=\"default\" encoded=\"yes\">a&lt;b &amp; 100%%%0d%0a\"c\"&gt;</TTS>\r\n"
                  "</ORVSEventFile>\r\n");
    EXPECT_EQ(makeEmailPayload({"f", "t", "s", "b"}),
              opening +
                  "\t<Email from=\"f\" to=\"t\" cc=\"\" bc=\"\" subject=\"s\" encoded=\"yes\">b</Email>\r\n"
                  "</ORVSEventFile>\r\n");
}

TEST(Schedules, HoursAreHalfHoursFromSunday) {
    struct Case {
        unsigned days, from, to;
        std::string hours;
    };
    const Case cases[] = {
        {0x7F, 0, 48, std::string(84, 'f')},
        {0x01, 0, 1, "01" + std::string(82, '0')},
        {0x02, 8, 9, std::string(12, '0') + "0001" + std::string(68, '0')},
        {0x40, 44, 48, std::string(82, '0') + "f0"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(weeklyHours(c.days, c.from, c.to), c.hours);
}

}  // namespace
}  // namespace orvc::demo
