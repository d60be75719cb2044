#include "model/schedule.h"

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::uint32_t kMustBeWhole = 1;  // bit 0 of CompleteBits

unsigned digitValue(char c) {
    const int lower = c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
    if (lower > 'f') return 0;
    return static_cast<unsigned>(lower >= 'a' ? lower - 'a' + 10 : lower - '0');
}

}  // namespace

WeekMask WeekMask::everySlot() {
    WeekMask mask;
    mask.bytes_.fill(0xFF);
    return mask;
}

std::string formatHours(const WeekMask& mask) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(kHoursTextLength);
    for (const std::uint8_t byte : mask.bytes()) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

void copyScheduleFromString(WeekMask& mask, std::string_view text, TrackingLog& log) {
    if (text.size() != kHoursTextLength) {
        log.log("copyScheduleFromString: Invalid schedule hex string length, expected 84, received %d",
                static_cast<int>(text.size()));
        return;
    }
    for (std::size_t i = 0; i < mask.bytes().size(); ++i)
        mask.bytes()[i] = static_cast<std::uint8_t>(16 * digitValue(text[2 * i]) + digitValue(text[2 * i + 1]));
}

VariableValues scheduleValues(const ScheduleRecord& record) {
    const std::string key = record.key.value_or("");
    const std::string path = joinPath(kSchedulesPath, key) + "\\";
    return {{path + "Name", record.name.value_or("")},
            {path + "Key", key},
            {path + "Hours", formatHours(record.hours.value_or(WeekMask{}))},
            {path + "CompleteBits", kMustBeWhole}};
}

bool isScheduleComplete(ScheduleRecord& record, const Clock& clock) {
    if (!record.completeBits) return false;
    const bool lacksField = !record.hours || !record.key || !record.name;
    if ((*record.completeBits & kMustBeWhole) != 0 && lacksField &&
        (record.completionDeadline == 0 || clock.now() <= record.completionDeadline))
        return false;
    record.completionDeadline = 0;
    return true;
}

}  // namespace orvc
