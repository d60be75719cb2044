#include "editors/schedule/schedule_form.h"

#include <algorithm>

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr int kNone = -1;
constexpr int kEndOfDay = WeekMask::kSlotsPerDay;
constexpr int kHoursPerHalf = 12;

// The messages about a period; 0 where nothing can be wrong.
struct PeriodMessages {
    unsigned noEnd;
    unsigned startsTooEarly;
    unsigned endsTooEarly;
};
constexpr std::array<PeriodMessages, ScheduleForm::kPeriods> kMessages{{
    {IDS_PERIOD_NO_END, 0, IDS_PERIOD_END_BEFORE_START},
    {IDS_PERIOD_NO_END_2, IDS_PERIOD_START_2_BEFORE_END_1, IDS_PERIOD_END_2_BEFORE_START_2},
    {IDS_PERIOD_NO_END_3, IDS_PERIOD_START_3_BEFORE_END_2, IDS_PERIOD_END_3_BEFORE_START_3},
}};

// The first slot from `from` on that is on (or off); kNone when there is none.
int findSlot(const WeekMask& mask, int day, int from, bool on) {
    for (int slot = from; slot < kEndOfDay; ++slot)
        if (mask.isSet(day, slot) == on) return slot;
    return kNone;
}

int findEnd(const WeekMask& mask, int day, int from) {
    const int end = findSlot(mask, day, from, false);
    return end == kNone ? kEndOfDay : end;
}

struct SlotRange {
    int begin = 0;
    int end = 0;
};

}  // namespace

int startPosition(const TimeChoice& time) {
    return time.minute + 2 * (time.hour + kHoursPerHalf * time.half) - 2;
}

int endPosition(const TimeChoice& time) {
    const int position = startPosition(time);
    return position == 0 ? kEndOfDay : position;
}

TimeChoice choiceAt(int position) {
    return {position / 2 % kHoursPerHalf + 1, position % 2, position / (2 * kHoursPerHalf)};
}

ScheduleForm::ScheduleForm(ScheduleRecord& record) : record_(record) {
    if (!record_.hours) record_.hours.emplace();
    showDay(0);
}

void ScheduleForm::changeHour(int time) {
    const auto index = static_cast<std::size_t>(time);
    detailEnabled_[index] = times[index].hour > 0;
}

std::optional<unsigned> ScheduleForm::changeDay(int day) {
    const auto message = commitDay();
    if (!message) showDay(day);
    return message;
}

std::optional<unsigned> ScheduleForm::commitDay() {
    std::array<SlotRange, kPeriods> ranges;
    int previousEnd = kNone;
    for (std::size_t period = 0; period < ranges.size(); ++period) {
        const TimeChoice& start = times[2 * period];
        const TimeChoice& end = times[2 * period + 1];
        const PeriodMessages& messages = kMessages[period];
        if (start.hour <= 0) {
            // The next period is then compared with nothing, not with the period before this one.
            previousEnd = kNone;
            continue;
        }
        if (end.hour <= 0) return messages.noEnd;
        ranges[period] = {startPosition(start), endPosition(end)};
        if (messages.startsTooEarly != 0 && ranges[period].begin < previousEnd) return messages.startsTooEarly;
        if (ranges[period].end < ranges[period].begin) return messages.endsTooEarly;
        previousEnd = ranges[period].end;
    }
    hours().clearDay(currentDay_);
    for (const SlotRange& range : ranges)
        for (int slot = std::max(range.begin, 0); slot < std::min(range.end, kEndOfDay); ++slot)
            hours().set(currentDay_, slot);
    return std::nullopt;
}

std::optional<unsigned> ScheduleForm::save() {
    const auto message = commitDay();
    record_.name = name;
    return message;
}

void ScheduleForm::showDay(int day) {
    currentDay_ = day;
    times.fill({});
    detailEnabled_.fill(false);
    int end = 0;
    for (int period = 0; period < kPeriods && end < kEndOfDay; ++period) {
        const int begin = findSlot(hours(), day, end, true);
        if (begin == kNone) return;
        end = findEnd(hours(), day, begin);
        showPeriod(period, begin, end);
    }
}

void ScheduleForm::showPeriod(int period, int begin, int end) {
    const auto first = 2 * static_cast<std::size_t>(period);
    times[first] = choiceAt(begin);
    times[first + 1] = choiceAt(end);
    detailEnabled_[first] = detailEnabled_[first + 1] = true;
}

}  // namespace orvc
