#include "editors/schedule/schedule_form.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "resources/resource.h"

namespace orvc {
namespace {

using Runs = std::vector<std::pair<int, int>>;  // slots [begin, end)

constexpr int kSlots = WeekMask::kSlotsPerDay;

Runs runsOf(const ScheduleRecord& record) {
    Runs runs;
    for (int slot = 0; slot < kSlots; ++slot) {
        if (!record.hours->isSet(0, slot)) continue;
        if (!runs.empty() && runs.back().second == slot)
            ++runs.back().second;
        else
            runs.emplace_back(slot, slot + 1);
    }
    return runs;
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
        ScheduleRecord record;
        record.hours.emplace().set(0, 3);
        ScheduleForm form(record);
        form.times = timesAt(test.positions);
        EXPECT_EQ(form.commitDay(), test.message) << testing::PrintToString(test.positions);
        EXPECT_EQ(runsOf(record), test.message ? (Runs{{3, 4}}) : test.written)
            << testing::PrintToString(test.positions);
    }
}

}  // namespace
}  // namespace orvc
