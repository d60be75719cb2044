// "Hours" texts, and a week through the schedule editor.
#include "editors/schedule/schedule_form.h"
#include "fuzz/input.h"
#include "fuzz/silent_log.h"

namespace orvc {
namespace {

void checkText(const std::string& text) {
    SilentLog silent;
    WeekMask mask;
    copyScheduleFromString(mask, text, silent.log);
    const std::string written = formatHours(mask);
    require(written.size() == kHoursTextLength, "a week has 84 digits");
    WeekMask again;
    copyScheduleFromString(again, written, silent.log);
    require(again == mask, "a written week reads as it was");
}

void checkEditing(Input& input) {
    ScheduleRecord record;
    record.hours.emplace();
    for (std::uint8_t& byte : record.hours->bytes())
        byte = static_cast<std::uint8_t>(input.byte());
    ScheduleForm form(record);
    for (int day = 0; day < WeekMask::kDays; ++day)
        require(!form.changeDay(day), "a day that was not touched passes");
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
    orvc::Input input(data, size);
    if (input.flag())
        orvc::checkText(std::string(input.rest()));
    else
        orvc::checkEditing(input);
    return 0;
}
