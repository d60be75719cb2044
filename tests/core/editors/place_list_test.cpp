#include "editors/place_list.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

constexpr KSMac tail(std::uint8_t last) {
    return {0x02, 0x4B, 0x53, 0x00, 0xF0, last};
}

class PlaceListTest : public EditorTest {
  protected:
    std::vector<std::string> texts() {
        std::vector<std::string> texts;
        for (const Place& place : listPlaces(directory_, strings_, IDS_SELECT_SOURCE))
            texts.push_back(place.text);
        return texts;
    }
};

TEST_F(PlaceListTest, HostileNamesStandAsTheyAreInByteOrderDevicesFirst) {
    for (const char* name : {"zone", "Zone", "\xE9tage", "", "100% %s%n%02x", "\"q\" 'a'", " lead", "(0"})
        device(tail(static_cast<std::uint8_t>(directory_.devices().size())), name);
    group(1, "device: A");
    group(2, "%s");
    group(3, "");
    EXPECT_EQ(texts(),
              (std::vector<std::string>{
                  "#311", "device:  lead (00f006)", "device: \"q\" 'a' (00f005)", "device: (0 (00f007)",
                  "device: 100% %s%n%02x (00f004)", "device: <Blank Name> (00f003)", "device: Zone (00f001)",
                  "device: zone (00f000)", "device: \xE9tage (00f002)", "group: ", "group: %s", "group: device: A"}));
}

TEST_F(PlaceListTest, EqualTextsStayApart) {
    KSMac twin = tail(1);
    twin[0] = 0x06;  // not in the text
    device(tail(1), "Twin");
    device(twin, "Twin");
    const auto places = listPlaces(directory_, strings_, IDS_SELECT_SOURCE);
    ASSERT_EQ(places.size(), 3u);
    EXPECT_EQ(places[1].text, places[2].text);
    // The directory tells its newest first, and who is told later goes before.
    EXPECT_EQ(places[1].device, tail(1));
    EXPECT_EQ(places[2].device, twin);
    EXPECT_EQ(findPlace(places, twin, ""), 2u);
}

TEST_F(PlaceListTest, FindsADeviceByAddressAndAGroupByName) {
    setUpInstallation();
    const auto places = listPlaces(directory_, strings_, IDS_SELECT_SOURCE);
    EXPECT_EQ(findPlace(places, kGate, ""), 2u);
    EXPECT_EQ(findPlace(places, {}, "Nurses"), 3u);
    EXPECT_EQ(findPlace(places, kGate, "Nurses"), 2u);
    EXPECT_EQ(findPlace(places, tail(1), "Nurses"), std::nullopt) << "a device that is gone is no group";
    EXPECT_EQ(findPlace(places, {}, "nurses"), std::nullopt);
    EXPECT_EQ(findPlace(places, {}, ""), std::nullopt) << "the placeholder is no place";
}

}  // namespace
}  // namespace orvc
