// What the two made-up installations promise.
#include <gtest/gtest.h>

#include <set>

#include "demo_server/core/built_in_building.h"
#include "demo_server/core/generated_installation.h"
#include "demo_server/core/records.h"
#include "demo_server/core/text_codec.h"

namespace orvc::demo {
namespace {

constexpr std::uint32_t kNow = 1'700'000'000;

struct Counts {
    int events = 0, disabled = 0, bad = 0;
    std::set<std::uint32_t> triggers, responses;
};

// Checks every Event against the rest of its installation.
Counts checkEvents(const Installation& installation) {
    Counts counts;
    std::set<std::string> groups;
    for (const Group& group : installation.groups)
        groups.insert(group.key);
    for (const auto& [path, entry] : installation.variables.keys()) {
        if (!path.starts_with("\\ORVS\\Events\\{")) continue;
        SCOPED_TRACE(path);
        const auto number = [&, &key = entry](auto field) { return installation.variables.find(key, field)->number; };
        const auto text = [&, &key = entry](auto field) { return installation.variables.find(key, field)->text; };
        const bool isBad = installation.variables.find(entry, "badData") != nullptr;
        const std::uint32_t trigger = number("EventTriggerType"), response = number("EventResponseType");
        EXPECT_EQ(entry.values.size(), isBad ? 19u : 18u);
        EXPECT_EQ(!text("TriggerGroupKey").empty() && !groups.contains(text("TriggerGroupKey")), isBad);
        EXPECT_EQ(!text("TtsFilename").empty(), response == 5);
        const auto file = parseGuid(text("FileGUID"));
        EXPECT_EQ(file && installation.files.contains(*file), response == 4 || response == 6);
        ++counts.events;
        counts.disabled += number("Disabled") != 0;
        counts.bad += isBad;
        counts.triggers.insert(trigger);
        counts.responses.insert(response);
    }
    return counts;
}

TEST(Buildings, AreWholeAndTheBuiltInOneShowsEverything) {
    const Counts building = checkEvents(makeBuiltInBuilding(kNow));
    EXPECT_EQ(building.events, 20);
    EXPECT_EQ(building.triggers, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(building.responses, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(building.disabled, 1);
    EXPECT_EQ(building.bad, 1);
    for (const GeneratedSize& size : {GeneratedSize{1, 1, 0}, {500, 50, 6}, {200, 3, 40}}) {
        const Installation generated = makeGeneratedInstallation(size, kNow);
        EXPECT_EQ(checkEvents(generated).events, static_cast<int>(size.events));
        EXPECT_EQ(generated.devices.size(), size.devices);
        EXPECT_EQ(generated.groups.size(), size.groups);
    }
}

}  // namespace
}  // namespace orvc::demo
