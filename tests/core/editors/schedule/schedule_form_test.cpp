#include "editors/schedule/schedule_form.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "resources/resource.h"

namespace orvc {
namespace {

using Runs = std::vector<std::pair<int, int>>;  // slots [begin, end)

constexpr int kSlots = WeekMask::kSlotsPerDay;

ScheduleRecord recordWith(const Runs& runs, int day = 0) {
    ScheduleRecord record;
    record.name = "Old name";
    record.key = "{K}";
    record.hours.emplace();
    for (const auto& [begin, end] : runs)
        for (int slot = begin; slot < end; ++slot)
            record.hours->set(day, slot);
    return record;
}

Runs runsOf(const ScheduleRecord& record, int day = 0) {
    Runs runs;
    for (int slot = 0; slot < kSlots; ++slot) {
        if (!record.hours->isSet(day, slot)) continue;
        if (!runs.empty() && runs.back().second == slot)
            ++runs.back().second;
        else
            runs.emplace_back(slot, slot + 1);
    }
    return runs;
}

// All days of two runs, and some of three.
TEST(ScheduleForm, ADayOfUpToThreeRunsIsWrittenAsItWasShown) {
    const auto expectStable = [](const Runs& runs) {
        ScheduleRecord record = recordWith(runs, 4);
        ScheduleForm form(record);
        ASSERT_EQ(form.changeDay(4), std::nullopt);
        const auto shown = form.times;
        ASSERT_EQ(form.commitDay(), std::nullopt);
        ASSERT_EQ(runsOf(record, 4), runs);
        ASSERT_EQ(form.changeDay(4), std::nullopt);
        ASSERT_EQ(form.times, shown);
    };
    expectStable({});
    for (int a = 0; a < kSlots; ++a)
        for (int b = a + 1; b < kSlots; ++b)
            for (int c = b + 1; c < kSlots; ++c)
                for (int d = c + 1; d <= kSlots; ++d)
                    expectStable({{a, b}, {c, d}});
    for (int i = 0; i < 43; ++i)
        expectStable({{0, i + 1}, {i + 2, i + 4}, {i + 5, 48}});
}

TEST(ScheduleForm, AFourthRunIsNotShownAndGoesWithTheNextCommit) {
    ScheduleRecord record = recordWith({{2, 4}, {10, 12}, {20, 22}, {30, 48}});
    ScheduleForm form(record);
    EXPECT_EQ(endPosition(form.times[5]), 22);
    EXPECT_EQ(form.changeDay(1), std::nullopt);
    EXPECT_EQ(runsOf(record), (Runs{{2, 4}, {10, 12}, {20, 22}}));
}

// Times are given as positions; kNone is an hour of "None".
constexpr int kNone = -1;

std::array<TimeChoice, ScheduleForm::kTimes> timesAt(const std::array<int, ScheduleForm::kTimes>& positions) {
    std::array<TimeChoice, ScheduleForm::kTimes> times;
    for (std::size_t i = 0; i < times.size(); ++i)
        if (positions[i] != kNone) times[i] = choiceAt(positions[i] % kSlots);
    return times;
}

TEST(ScheduleForm, ChecksPeriodsInTheirOrder) {
    const struct {
        std::array<int, ScheduleForm::kTimes> positions;
        std::optional<unsigned> message;
        Runs written;
    } cases[] = {
        {{kNone, 20, kNone, 5, kNone, 7}, {}, {}},  // an end without a start is ignored
        {{18, kNone, kNone, kNone, kNone, kNone}, IDS_PERIOD_NO_END, {}},
        {{18, 17, kNone, kNone, kNone, kNone}, IDS_PERIOD_END_BEFORE_START, {}},
        {{18, 18, kNone, kNone, kNone, kNone}, {}, {}},  // as long as nothing
        {{18, 24, 30, kNone, kNone, kNone}, IDS_PERIOD_NO_END_2, {}},
        {{18, 24, 23, 30, kNone, kNone}, IDS_PERIOD_START_2_BEFORE_END_1, {}},
        {{18, 24, 23, 22, kNone, kNone}, IDS_PERIOD_START_2_BEFORE_END_1, {}},  // the first failure is told
        {{18, 24, 30, 29, kNone, kNone}, IDS_PERIOD_END_2_BEFORE_START_2, {}},
        {{18, 24, 24, 34, kNone, kNone}, {}, {{18, 34}}},  // where one ends the next may start
        {{18, 24, 30, 34, 40, kNone}, IDS_PERIOD_NO_END_3, {}},
        {{18, 24, 30, 34, 33, 40}, IDS_PERIOD_START_3_BEFORE_END_2, {}},
        {{18, 24, 30, 34, 40, 39}, IDS_PERIOD_END_3_BEFORE_START_3, {}},
        {{18, 24, 30, 34, 34, 48}, {}, {{18, 24}, {30, 48}}},
        {{18, 24, kNone, kNone, 2, 6}, {}, {{2, 6}, {18, 24}}},  // the third is compared with the second only
        {{18, 24, kNone, kNone, 20, 30}, {}, {{18, 30}}},
    };
    for (const auto& test : cases) {
        ScheduleRecord record = recordWith({{3, 5}});
        ScheduleForm form(record);
        form.times = timesAt(test.positions);
        EXPECT_EQ(form.commitDay(), test.message) << testing::PrintToString(test.positions);
        EXPECT_EQ(runsOf(record), test.message ? (Runs{{3, 5}}) : test.written)
            << testing::PrintToString(test.positions);
    }
}

}  // namespace
}  // namespace orvc
