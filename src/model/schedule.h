// A Schedule: a named weekly mask of half hours, and its text form.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/variable_value.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// 7 days (Sunday first) of 48 half-hour slots, 6 bytes a day, least significant bit first.
class WeekMask {
  public:
    static constexpr int kDays = 7;
    static constexpr int kSlotsPerDay = 48;
    static constexpr int kBytesPerDay = kSlotsPerDay / 8;
    static constexpr std::size_t kMaskBytes = 42;

    // `day` 0 to 6, `slot` 0 to 47.
    bool isSet(int day, int slot) const { return (bytes_[index(day, slot)] >> (slot % 8) & 1) != 0; }
    void set(int day, int slot) { bytes_[index(day, slot)] |= static_cast<std::uint8_t>(1 << (slot % 8)); }
    void clearDay(int day) {
        for (int slot = 0; slot < kSlotsPerDay; slot += 8)
            bytes_[index(day, slot)] = 0;
    }

    const std::array<std::uint8_t, kMaskBytes>& bytes() const { return bytes_; }
    std::array<std::uint8_t, kMaskBytes>& bytes() { return bytes_; }

    static WeekMask everySlot();

    friend bool operator==(const WeekMask&, const WeekMask&) = default;

  private:
    static std::size_t index(int day, int slot) {
        const int index = day * kBytesPerDay + slot / 8;
        return static_cast<std::size_t>(index);
    }
    std::array<std::uint8_t, kMaskBytes> bytes_{};
};

inline constexpr std::size_t kHoursTextLength = 84;

// The 84 lower-case hexadecimal digits of a mask, high nibble first.
std::string formatHours(const WeekMask& mask);

// Fills the mask from 84 digits. Another length is logged and leaves the mask as it is; a character that is no digit
// counts as its distance from "0", one above "f" as 0.
void copyScheduleFromString(WeekMask& mask, std::string_view text, TrackingLog& log);

// Key and name of the Schedule that is always there.
inline constexpr std::string_view kDefaultScheduleKey = "{Default}";
inline constexpr std::string_view kDefaultScheduleName = "All Days, All Day";

struct ScheduleRecord {
    std::uint32_t id = 0;                       // given by its list, never twice; 0 outside
    std::optional<std::uint32_t> completeBits;  // absent until received
    std::int64_t completionDeadline = 0;        // seconds since 1970 UTC; 0 once the record was complete
    std::optional<std::string> name;
    std::optional<std::string> key;
    std::optional<WeekMask> hours;
    std::optional<bool> complete;  // result of the last test; absent before the first
    bool updated = false;          // a value arrived since the schedule list last looked
};

// What a Schedule is written as, below its key: every value in writing order.
VariableValues scheduleValues(const ScheduleRecord& record);

// Whether the record may be shown. The first time that it is, its grace ends for good.
bool isScheduleComplete(ScheduleRecord& record, const Clock& clock);

}  // namespace orvc
