// The rules of the schedule editor: one day of a Schedule at a time, as at most three periods on a 12-hour clock.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "model/schedule.h"

namespace orvc {

// A time as its three drop-down lists hold it: indices of their entries, -1 where nothing is selected.
struct TimeChoice {
    int hour = 0;    // 0 "None", 1 "12", 2 "01" to 12 "11"
    int minute = 0;  // 0 "00", 1 "30"
    int half = 0;    // 0 "AM", 1 "PM"

    friend bool operator==(const TimeChoice&, const TimeChoice&) = default;
};

// The slot that starts at a chosen time, 0 to 47. Where no half of the day is selected the result is negative.
int startPosition(const TimeChoice& time);
// The same for the end of a period: midnight is the end of the day, 48.
int endPosition(const TimeChoice& time);
// The entries for a position of 0 to 48. 48 gives half 2: an entry that the list does not have, so that it shows none.
TimeChoice choiceAt(int position);

// Purpose: what the schedule editor holds, checks and enables.
//
// The dialog copies `name` and `times` to and from its controls; everything else is asked for. A failed check
// returns the id of its message. Days are 0 (Sunday) to 6.
// Thread: user-interface thread. Lifetime: the record outlives the form and is written in place: a day when it is left,
// the name when the form is saved.
class ScheduleForm {
  public:
    static constexpr int kPeriods = 3;
    static constexpr int kTimes = 2 * kPeriods;

    // Shows Sunday. The name starts empty, whatever the record's is.
    explicit ScheduleForm(ScheduleRecord& record);

    std::string name;
    // Start 1, end 1, start 2 … end 3.
    std::array<TimeChoice, kTimes> times;

    int currentDay() const { return currentDay_; }
    bool canSave() const { return !name.empty(); }
    // Whether the minute and the AM/PM list of that time are enabled. The hour lists always are.
    bool isDetailEnabled(int time) const { return detailEnabled_[static_cast<std::size_t>(time)]; }

    // The operator chose another hour for that time.
    void changeHour(int time);
    // Leaves the current day for `day`. When the check fails the current day stays, with the entries as they are.
    std::optional<unsigned> changeDay(int day);
    // Checks the current day and writes it into the record. When the check fails the record keeps what it had.
    std::optional<unsigned> commitDay();
    // Commits the current day and, whether or not that succeeds, takes the name over.
    std::optional<unsigned> save();

  private:
    void showDay(int day);
    void showPeriod(int period, int begin, int end);
    WeekMask& hours() { return *record_.hours; }

    ScheduleRecord& record_;
    int currentDay_ = 0;
    std::array<bool, kTimes> detailEnabled_{};
};

}  // namespace orvc
