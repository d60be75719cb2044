// "Hours" texts, and a week through the schedule editor.
#include "editors/schedule/schedule_form.h"
#include "fuzz/input.h"
#include "fuzz/silent_log.h"

namespace orvc {
namespace {

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

void checkText(const std::string& text, TrackingLog& log) {
    WeekMask mask;
    copyScheduleFromString(mask, text, log);
    const std::string written = formatHours(mask);
    require(written.size() == kHoursTextLength, "a week has 84 digits");
    WeekMask again;
    copyScheduleFromString(again, written, log);
    require(again == mask, "a written week reads as it was");
    if (text.size() == kHoursTextLength && std::ranges::all_of(text, isHex))
        require(written == text, "digits come back as they came");
}

// What the editor keeps of a day: its first three periods.
void keepFirstPeriods(WeekMask& mask, int day) {
    const WeekMask before = mask;
    mask.clearDay(day);
    int periods = 0;
    for (int slot = 0; slot < WeekMask::kSlotsPerDay; ++slot) {
        const bool on = before.isSet(day, slot);
        if (on && (slot == 0 || !before.isSet(day, slot - 1))) ++periods;
        if (on && periods <= ScheduleForm::kPeriods) mask.set(day, slot);
    }
}

void checkEditing(Input& input) {
    ScheduleRecord record;
    record.hours.emplace();
    for (std::uint8_t& byte : record.hours->bytes())
        byte = static_cast<std::uint8_t>(input.byte());
    WeekMask expected = *record.hours;
    ScheduleForm form(record);
    for (int day = 0; day < WeekMask::kDays; ++day) {
        require(!form.changeDay(day), "a day that was not touched passes");
        keepFirstPeriods(expected, day);
    }
    require(!form.commitDay() && *record.hours == expected, "what was shown is what is written");
    while (!input.isEmpty()) {
        const auto time = input.byte() % ScheduleForm::kTimes;
        const auto entry = [&](int count) { return static_cast<int>(input.byte()) % (count + 1) - 1; };
        form.times[time] = {entry(13), entry(2), entry(2)};
        form.changeHour(static_cast<int>(time));
        WeekMask before = *record.hours;
        const int edited = form.currentDay();
        const auto message = form.changeDay(static_cast<int>(input.byte() % WeekMask::kDays));
        if (message) require(*record.hours == before, "a refused day stays as it was");
        WeekMask after = *record.hours;
        before.clearDay(edited);
        after.clearDay(edited);
        require(before == after, "no other day is touched");
    }
}

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvc::SilentLog silent;
    orvc::Input input(data, size);
    if (input.flag())
        orvc::checkText(std::string(input.rest()), silent.log);
    else
        orvc::checkEditing(input);
    return 0;
}
