#include "model/schedule.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"

namespace orvc {
namespace {

class ScheduleTest : public ::testing::Test {
  protected:
    WeekMask read(const std::string& text, WeekMask mask = {}) {
        copyScheduleFromString(mask, text, log_.log);
        return mask;
    }

    Journal journal_;
    JournalLog log_{journal_};
};

TEST_F(ScheduleTest, HoursAreReadAndWrittenByDayAndHalfHour) {
    const auto zeros = [](std::size_t count) { return std::string(count, '0'); };
    const std::tuple<int, int, std::string> rows[] = {{0, 0, "01" + zeros(82)},
                                                      {1, 8, zeros(12) + "0001" + zeros(68)},
                                                      {0, 4, "10" + zeros(82)},
                                                      {6, 47, zeros(82) + "80"}};
    for (const auto& [day, slot, text] : rows) {
        WeekMask mask;
        mask.set(day, slot);
        EXPECT_EQ(formatHours(mask), text);
        EXPECT_EQ(read(text), mask);
    }
}

TEST_F(ScheduleTest, EveryCharacterIsADigitOfSomeValueButTheLengthMustBeRight) {
    const std::pair<const char*, int> rows[] = {{"aF", 0xAF}, {"Ff", 0xFF}, {"9A", 0x9A}, {"gz", 0},   {"G1", 1},
                                                {"~5", 5},    {"0:", 10},   {"0@", 16},   {"0/", 255}, {"1 ", 0}};
    for (const auto& [digits, byte] : rows)
        EXPECT_EQ(read(digits + std::string(82, '0')).bytes()[0], byte) << digits;
    EXPECT_EQ(read(std::string(83, '0'), WeekMask::everySlot()), WeekMask::everySlot());
    EXPECT_EQ(journal_.take(),
              "log: copyScheduleFromString: Invalid schedule hex string length, expected 84, received 83");
}

TEST_F(ScheduleTest, ARecordIsCompleteWithItsFieldsOrOnceItsGraceIsOver) {
    FakeClock& clock = log_.clock;
    ScheduleRecord record;
    record.completionDeadline = clock.seconds - 1;
    EXPECT_FALSE(isScheduleComplete(record, clock)) << "without its marker never";
    record.completeBits = 3;
    record.completionDeadline = clock.seconds;
    EXPECT_FALSE(isScheduleComplete(record, clock));
    clock.seconds += 1;
    EXPECT_TRUE(isScheduleComplete(record, clock));
    EXPECT_FALSE(isScheduleComplete(record, clock)) << "the grace is given once";
    record.name = record.key = "";
    EXPECT_FALSE(isScheduleComplete(record, clock));
    record.hours = WeekMask{};
    EXPECT_TRUE(isScheduleComplete(record, clock)) << "empty texts and masks are there";
    record.hours.reset();
    record.completeBits = 0xFFFFFFFE;
    EXPECT_TRUE(isScheduleComplete(record, clock)) << "bit 0 clear: nothing is required";
}

}  // namespace
}  // namespace orvc
