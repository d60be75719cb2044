#include "model/schedule_list.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "fake_server_link.h"

namespace orvc {
namespace {

class ScheduleListTest : public ::testing::Test {
  protected:
    // What one variable logs, and whether it was claimed.
    std::string update(const std::string& path, const std::string& text, std::uint32_t number = 0) {
        const bool claimed = list_.updateVariable({"\\ORVS\\Schedules\\" + path, 0, text, number});
        return journal_.take() + (claimed ? "" : " declined");
    }
    std::string names() {
        Journal names;
        for (const ScheduleRecord& record : list_.records())
            names.add(record.name.value_or("(none)"));
        return names.take();
    }
    static std::string changed(const std::string& name, const std::string& from, const std::string& to) {
        return "log: updateScheduleVariables: schedule " + name + " changed from " + from + " to " + to;
    }

    Journal journal_;
    JournalLog log_{journal_};
    FakeServerLink link_{journal_};
    ScheduleList list_{link_, log_.log, log_.clock};
};

TEST_F(ScheduleListTest, ARecordsWayToCompletenessIsLoggedInItsOwnWords) {
    EXPECT_EQ(update("{1}\\Name", "Nights"),
              changed("Nights", "Complete", "Not Complete") + "; " + changed("Nights", "Not Updated", "Updated"));
    EXPECT_EQ(update("{1}\\CompleteBits", "", 1), "");
    EXPECT_EQ(update("{1}\\Hours", std::string(84, 'F')), changed("Nights", "Not Complete", "Complete"));
    EXPECT_EQ(list_.find("{1}")->hours, WeekMask::everySlot());
    EXPECT_EQ(update("{1}\\Hours", std::string(85, 'f')),
              "log: copyScheduleFromString: Invalid schedule hex string length, expected 84, received 85");
    EXPECT_EQ(list_.find("{1}")->hours, WeekMask{}) << "malformed: there, and off";
    EXPECT_EQ(update("{1}\\CompleteBits", "", 0xFFFFFFFF), changed("Nights", "Complete", "Not Complete"));
    EXPECT_EQ(update("{2}\\CompleteBits", "", 0),
              changed("", "Complete", "Complete") + "; " + changed("", "Not Updated", "Updated"));
}

TEST_F(ScheduleListTest, TheFieldIsTheLastPartOfTheName) {
    update("{1}\\deeper\\Name", "found");
    EXPECT_EQ(list_.find("{1}")->name, "found");
    EXPECT_EQ(update("{1}\\completeBits", "1"), "log: updateScheduleVariables: variable 'completeBits' not found");
    EXPECT_EQ(update("{1}\\", ""), "log: updateScheduleVariables: variable '' not found");
    EXPECT_EQ(update("{1}", ""), " declined");
    EXPECT_EQ(update("\\Name", ""), "log: updateDeviceVariables: did not get the device name properly declined");
    EXPECT_EQ(names(), "All Days, All Day; found");
}

TEST_F(ScheduleListTest, RecordsFollowTheBuiltInOneAndKeepThePathTheyWereMadeUnder) {
    update("{B}\\Name", "b");
    update("{A}\\Name", "a");
    update("{A}\\Key", "{B}");
    update("{A}\\Name", "renamed");
    update("{Default}\\Name", "default, renamed");
    EXPECT_EQ(names(), "default, renamed; b; renamed");
    EXPECT_EQ(list_.find("{A}"), nullptr);
    EXPECT_EQ(list_.find("{B}")->name, "b") << "the first with that key";
    list_.clear();
    EXPECT_EQ(names(), "All Days, All Day");
    EXPECT_EQ(list_.find("{Default}")->hours, WeekMask::everySlot());
    for (const std::size_t length : {127, 128})
        update(std::string(length, 'k') + "\\Name", "1");
    for (const std::size_t length : {127, 128})
        update(std::string(length, 'k') + "\\Name", "2");
    EXPECT_EQ(names(), "All Days, All Day; 2; 1; 2") << "a key of 128 characters is never found again";
}

TEST_F(ScheduleListTest, AddingWritesARecordAndListsItOnlyOnce) {
    ScheduleRecord record;
    record.key = "{N}";
    record.hours = WeekMask{};
    record.hours->set(0, 0);
    list_.makeDefault();
    const std::string path = "\\ORVS\\Schedules\\{N}\\";
    for (int i = 0; i < 2; ++i) {
        list_.add(record);
        EXPECT_EQ(journal_.take(), path + "Name=''; " + path + "Key='{N}'; " + path + "Hours='01" +
                                       std::string(82, '0') + "'; " + path + "CompleteBits=1");
    }
    update("{N}\\Name", "echoed");
    EXPECT_EQ(names(), "All Days, All Day; echoed") << "the server's echo finds the record";
}

}  // namespace
}  // namespace orvc
