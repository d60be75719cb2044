#include "view/window_texts.h"

#include <gtest/gtest.h>

#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

struct WindowTextsTest : testing::Test {
    WindowTextsTest() {
        strings.texts = {{IDS_LINK_CONNECTED, "Connected to %s:%d as %s"},
                         {IDS_LINK_BANNER, "Not connected to %s:%d since %s."},
                         {IDS_COUNT_EVENT, "%s Event"},
                         {IDS_COUNT_EVENTS, "%s Events"},
                         {IDS_COUNT_SHOWN, "%s shown"},
                         {IDS_COUNT_SELECTED, "%s selected"},
                         {IDS_COUNT_AVAILABLE, "%s available"},
                         {IDS_DETAIL_SELECTED, "%s selected: %s"},
                         {IDS_COUNT_DISABLED, "%s disabled"},
                         {IDS_COUNT_PROBLEMS, "%s with problems"},
                         {IDS_DIGIT_GROUPS, ","},
                         {IDS_LIST_SEPARATOR, ", "},
                         {IDS_EMPTY_RECEIVING, "Receiving... %s so far"},
                         {IDS_EMPTY_NO_MATCH, "No Event matches '%s'. Esc shows all %s."},
                         {IDS_DELETE_EVENTS, "Delete %s Events?\n\n%s"},
                         {IDS_DELETE_EVENTS_MORE, "and %s more"},
                         {IDS_DONE_DISABLED, "%s disabled."},
                         {IDS_DONE_CANCELLED, "Cancelled: %s."},
                         {IDS_NOT_STORED_ONE, "1 not stored"},
                         {IDS_NOT_STORED_MANY, "%s not stored"}};
    }
    FakeStringTable strings;
};

TEST_F(WindowTextsTest, NumbersAreGroupedAndWhatSaysNothingIsLeftOut) {
    const std::pair<std::size_t, const char*> numbers[] = {
        {0, "0"}, {999, "999"}, {1'000, "1,000"}, {50'000, "50,000"}, {1'234'567, "1,234,567"}};
    for (const auto& [number, text] : numbers)
        EXPECT_EQ(numberText(strings, number), text);
    EXPECT_EQ(countText(strings, {20, 20, 0, 0, 0}), "20 Events");
    EXPECT_EQ(countText(strings, {1, 1, 1, 0, 0}), "1 Event, 1 selected");
    EXPECT_EQ(countText(strings, {20, 3, 2, 0, 0}), "20 Events, 3 shown, 2 selected");
    EXPECT_EQ(stateText(strings, {20, 20, 0, 0, 0}), "");
    EXPECT_EQ(stateText(strings, {20, 20, 0, 1, 3}), "1 disabled, 3 with problems");
    EXPECT_EQ(selectionText(strings, {5, 5, 0, 2, 0}), "5 Events selected: 3 available, 2 disabled");
}

TEST_F(WindowTextsTest, TheLinkIsNamedAndItsLossIsTold) {
    LinkStatus link{LinkStage::kConnected, false, true, "10.1.2.3", 3010, "admin", {.hour = 14, .minute = 2}};
    EXPECT_EQ(linkText(strings, link), "Connected to 10.1.2.3:3010 as admin");
    EXPECT_EQ(bannerText(strings, link), "");
    link.stage = LinkStage::kReceiving;
    EXPECT_EQ(linkText(strings, link), strings.text(IDS_LINK_RECEIVING));
    link.stage = LinkStage::kNotConnected;
    EXPECT_EQ(bannerText(strings, link), "Not connected to 10.1.2.3:3010 since 14:02.");
    strings.texts[IDS_LINK_NONE] = "Not connected";
    link.reason = "No answer";
    EXPECT_EQ(bannerText(strings, link), "Not connected to 10.1.2.3:3010 since 14:02. No answer.");
    EXPECT_EQ(linkText(strings, link), "Not connected. No answer.");
    link.wasConnected = false;  // a logoff
    EXPECT_EQ(bannerText(strings, link), "");
    link.stage = LinkStage::kConnected;
    link.isStandalone = true;
    EXPECT_EQ(linkText(strings, link), strings.text(IDS_LINK_STANDALONE));
}

TEST_F(WindowTextsTest, EveryFailureOfALogonHasItsReason) {
    strings.texts[IDS_REASON_OTHER] = "error %d";
    const std::pair<std::int32_t, std::string> reasons[] = {
        {-5, strings.text(IDS_REASON_NO_ANSWER)},    {-2, strings.text(IDS_REASON_NOT_FOUND)},
        {-30, strings.text(IDS_REASON_INVALID)},     {-31, strings.text(IDS_REASON_IN_USE)},
        {-9, strings.text(IDS_REASON_INCOMPATIBLE)}, {-8, strings.text(IDS_REASON_INVALID_OR_IN_USE)},
        {0, strings.text(IDS_REASON_NO_RIGHTS)},     {7, "error 7"}};
    for (const auto& [code, text] : reasons)
        EXPECT_EQ(reasonText(strings, {code, false}), text);
}

TEST_F(WindowTextsTest, AnEmptyListSaysWhy) {
    const struct {
        LinkStage stage;
        ListCounts counts;
        FilterShown filter;
        std::string text;
    } cases[] = {
        {LinkStage::kConnected, {5, 1, 0, 0, 0}, {}, ""},
        {LinkStage::kNotConnected, {}, {"annex"}, strings.text(IDS_EMPTY_NO_LOGON)},
        {LinkStage::kReceiving, {3120, 0, 0, 0, 0}, {}, "Receiving... 3,120 so far"},
        {LinkStage::kConnected, {}, {}, strings.text(IDS_EMPTY_NO_EVENTS)},
        {LinkStage::kConnected,
         {5000, 0, 0, 0, 0},
         {"annex", true, true},
         "No Event matches 'annex'. Esc shows all 5,000."},
        {LinkStage::kConnected, {5, 0, 0, 0, 0}, {"", true, true}, strings.text(IDS_EMPTY_NO_PROBLEMS)},
        {LinkStage::kConnected, {5, 0, 0, 0, 0}, {"", true, false}, strings.text(IDS_EMPTY_NONE_SHOWN)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(
            emptyListText(strings, {.stage = c.stage, .address = {}, .logonId = {}, .lostAt = {}}, c.counts, c.filter),
            c.text);
}

TEST_F(WindowTextsTest, ManyAreAskedForByFiveNamesAndTheOutcomeTellsWhatIsMissing) {
    EXPECT_EQ(deletionQuestion(strings, {"a", "b"}), "Delete 2 Events?\n\na\nb");
    EXPECT_EQ(deletionQuestion(strings, {"a", "b", "c", "d", "e", "f", "g"}),
              "Delete 7 Events?\n\na\nb\nc\nd\ne\nand 2 more");
    const auto outcome = [&](std::initializer_list<Outcome> outcomes) {
        std::vector<ChangeResult> results;
        for (const Outcome one : outcomes)
            results.push_back({one, {}});
        return outcomeText(strings, IDS_DONE_DISABLED, results);
    };
    using enum Outcome;
    EXPECT_EQ(outcome({kStored, kStored}), "2 Events disabled.");
    EXPECT_EQ(outcome({kStored, kNoEcho}), "1 Event disabled. 1 not stored");
    EXPECT_EQ(outcome({kRefused, kGone, kLinkLost}), "3 not stored");
    EXPECT_EQ(outcome({kStored, kCancelled, kCancelled}), "1 Event disabled. Cancelled: 2 Events.");
}

}  // namespace
}  // namespace orvc
