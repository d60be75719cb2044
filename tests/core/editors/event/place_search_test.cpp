#include "editors/event/place_search.h"

#include <gtest/gtest.h>

namespace orvc {
namespace {

// In the order of the list.
const std::vector<SearchText> kEntries{{"", ""},                         // 0: the placeholder
                                       {"120 Main Street", "(ab0001)"},  // 1
                                       {"Front door", "(ab0012)"},       // 2
                                       {"Garage door", "(ab0013)"},      // 3
                                       {"Ward 120", "(ab0120)"},         // 4
                                       {"Ward 12", "(ab0002)"},          // 5
                                       {"Ward 012a", "(ab0003)"},        // 6
                                       {"Nurses' room, ward 7", ""},     // 7
                                       {"Dormitory", ""}};               // 8
constexpr int kNothing = -1;

class PlaceSearchTest : public testing::Test {
  protected:
    PlaceSearchTest() {
        search_.reset([] { return kEntries; });
    }
    // What is chosen after these letters, typed at once after a long pause.
    int type(const std::string& text, int current = 0) {
        now_ += 5000;
        for (const char c : text)
            if (const auto found = search_.type(c, now_, current)) current = static_cast<int>(*found);
        return current;
    }

    PlaceSearch search_{foldAscii};
    std::uint32_t now_ = 0xFFFFF000;  // the count begins anew soon
};

TEST_F(PlaceSearchTest, FindsWordsByTheirBeginningAndNumbersAsNumbers) {
    const struct {
        const char* typed;
        int found;
    } cases[] = {{"f", 2},      {"DOOR", 2},       {"do", 8},     {"doo", 2}, {"g", 3},      {"oor", 0},
                 {"ward 7", 7}, {"room", 7},       {"12", 5},     {"120", 1}, {"1", 1},      {"7", 7},
                 {"012", 5},    {"ward 12", 5},    {"ward 0", 4}, {"12a", 6}, {"ab0013", 3}, {"ab13", 3},
                 {"ab0120", 4}, {"front door", 2}, {"zzz", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(type(c.typed), c.found) << c.typed;
}

TEST_F(PlaceSearchTest, OneLetterGoesOnFromMatchToMatchAndAPauseBeginsAWordAnew) {
    EXPECT_EQ(type("w"), 4);
    EXPECT_EQ(type("w", 4), 5);
    EXPECT_EQ(type("www", 4), 7);
    EXPECT_EQ(type("w", 7), 4);
    // Within a second letters belong together.
    now_ += 5000;
    EXPECT_EQ(search_.type('d', now_, 0), 8u);
    EXPECT_TRUE(search_.isTyping(now_ + 999));
    EXPECT_FALSE(search_.isTyping(now_ + 1000));
    EXPECT_EQ(search_.type('o', now_ += 999, 8), 8u);
    EXPECT_EQ(search_.type('o', now_ += 999, 8), 2u);
    EXPECT_EQ(search_.type('f', now_ += 1000, 2), 2u);
    search_.reset(nullptr);
    EXPECT_FALSE(search_.isTyping(now_));
    EXPECT_EQ(search_.type('w', now_, 0), std::nullopt);
}

TEST(SearchText, IsWhatStandsBehindTheKindWithTheDevicesNumberApart) {
    const std::pair<Place, SearchText> cases[] = {
        {{PlaceKind::kNone, {}, {}, "<Select Source>"}, {"", ""}},
        {{PlaceKind::kDevice, {}, {}, "device: Lobby (east): 2 (100002)"}, {"Lobby (east): 2 ", "(100002)"}},
        {{PlaceKind::kDevice, {}, {}, "device: <Blank Name> (100002)"}, {"<Blank Name> ", "(100002)"}},
        {{PlaceKind::kGroup, {}, "Nurses (night)", "group: Nurses (night)"}, {"Nurses (night)", ""}}};
    for (const auto& [place, text] : cases)
        EXPECT_EQ(searchTextOf(place), text) << place.text;
}

}  // namespace
}  // namespace orvc
