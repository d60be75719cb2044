#include "app/event_texts.h"

#include <gtest/gtest.h>

#include "fake_clock.h"
#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

TEST(EventTexts, EveryCellShowsWhatIsKnown) {
    FakeClock clock;
    FakeStringTable strings;
    strings.texts = {{IDS_NEVER, "Never"},
                     {IDS_STATUS_AVAILABLE, "Available"},
                     {IDS_STATUS_ERROR, "Error"},
                     {IDS_STATUS_DISABLED, "Disabled"},
                     {IDS_RESPONSE_UNKNOWN, "Unknown"}};
    EventRecord record;
    const auto cell = [&](EventColumn column) { return eventCellText(record, column, strings, clock); };
    EXPECT_EQ(cell(EventColumn::kName), "");
    record.name = "50% \\n";
    EXPECT_EQ(cell(EventColumn::kName), "50% \\n");
    // clang-format off
    const std::tuple<OptionalDword, OptionalDword, const char*> states[] = {
        {0, std::nullopt, "Available"}, {0, 2, "Available"}, {0, 1, "Error"},
        {1, 1, "Disabled"}, {7, 0, "Disabled"}, {std::nullopt, 0, "Disabled"}};
    const std::pair<OptionalDword, const char*> times[] = {
        {std::nullopt, "Never"}, {0, "Never"}, {1, "Thu Jan  1 00:00:01 1970"}, {0xFFFFFFFE, "Sun Feb  7 06:28:14 2106"}};
    const std::pair<OptionalDword, const char*> responses[] = {
        {0, "#220"}, {1, "#221"}, {6, "#226"}, {7, "Unknown"}, {0xFFFFFFFE, "Unknown"}, {std::nullopt, "Unknown"}};
    // clang-format on
    for (const auto& [disabled, badData, text] : states) {
        record.disabled = disabled;
        record.badData = badData;
        EXPECT_EQ(cell(EventColumn::kStatus), text);
    }
    for (const auto& [time, text] : times) {
        record.lastTriggered = time;
        EXPECT_EQ(cell(EventColumn::kLastEvent), text);
    }
    for (const auto& [response, text] : responses) {
        record.responseType = response;
        EXPECT_EQ(cell(EventColumn::kResponse), text);
    }
}

}  // namespace
}  // namespace orvc
