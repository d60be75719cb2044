#include "editors/event/place_choices.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

using PlaceListTest = EditorTest;

TEST_F(PlaceListTest, HostileNamesStandAsTheyAreInByteOrderDevicesFirst) {
    std::uint8_t last = 0;
    for (const char* name : {"zone", "Zone", "\xE9tage", "", "100% %s%n%02x", "\"q\" 'a'", " lead", "(0"})
        device({0x02, 0x4B, 0x53, 0x00, 0xF0, last++}, name);
    group(1, "device: A");
    group(2, "%s");
    group(3, "");
    std::vector<std::string> texts;
    for (const Place& place : listPlaces(directory_, strings_, IDS_SELECT_SOURCE))
        texts.push_back(place.text);
    EXPECT_EQ(texts,
              (std::vector<std::string>{
                  "#311", "device:  lead (00f006)", "device: \"q\" 'a' (00f005)", "device: (0 (00f007)",
                  "device: 100% %s%n%02x (00f004)", "device: <Blank Name> (00f003)", "device: Zone (00f001)",
                  "device: zone (00f000)", "device: \xE9tage (00f002)", "group: ", "group: %s", "group: device: A"}));
}

TEST_F(PlaceListTest, FindsADeviceByAddressAndAGroupByName) {
    setUpInstallation();
    KSMac twin = kGate;
    twin[0] = 0x06;  // not in the text
    device(twin, "Gate");
    const auto places = listPlaces(directory_, strings_, IDS_SELECT_SOURCE);
    ASSERT_EQ(places.size(), 5u);
    EXPECT_EQ(places[2].text, places[3].text);
    EXPECT_EQ(findPlace(places, kGate, ""), 2u) << "of equals, whoever is told later goes before";
    EXPECT_EQ(findPlace(places, twin, "Nurses"), 3u);
    EXPECT_EQ(findPlace(places, {}, "Nurses"), 4u);
    EXPECT_EQ(findPlace(places, {1}, "Nurses"), std::nullopt) << "a device that is gone is no group";
    EXPECT_EQ(findPlace(places, {}, "nurses"), std::nullopt);
    EXPECT_EQ(findPlace(places, {}, ""), std::nullopt) << "the placeholder is no place";
}

}  // namespace
}  // namespace orvc
