#include "model/schedule_list.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"

namespace orvc {
namespace {

class ScheduleListTest : public ::testing::Test {
  protected:
    // What one variable logs.
    std::string update(const std::string& path, const std::string& text, std::uint32_t number = 0) {
        EXPECT_TRUE(list_.updateVariable({"\\ORVS\\Schedules\\" + path, 0, text, number}));
        return journal_.take();
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
    ScheduleList list_{log_.log, log_.clock};
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
    EXPECT_TRUE(list_.takeUpdates());
    list_.clear();
    EXPECT_TRUE(list_.takeUpdates()) << "an open list must empty itself";
    EXPECT_FALSE(list_.takeUpdates());
}

TEST_F(ScheduleListTest, ASavedScheduleIsFoundUnderItsKeyWhereverItWasReceived) {
    update("{P}\\Name", "received under {P}");
    update("{P}\\Key", "{K}");
    ScheduleRecord saved = *list_.find("{K}");
    saved.name = "saved";
    list_.takeUpdates();
    EXPECT_EQ(&list_.store(saved), list_.find("{K}"));
    EXPECT_TRUE(list_.takeUpdates());
    update("{K}\\Name", "echo");
    update("{P}\\Hours", std::string(84, '0'));
    EXPECT_EQ(names(), "All Days, All Day; echo") << "not doubled";
    // Two with one key are two records.
    update("{K2}\\Name", "other");
    update("{K2}\\Key", "{K}");
    ScheduleRecord other = *list_.findById(list_.find("{K}")->id + 1);
    other.name = "the other";
    list_.store(other);
    EXPECT_EQ(names(), "All Days, All Day; echo; the other");
}

TEST_F(ScheduleListTest, ADeletedKeyTakesItsRecordAlongButNeverTheBuiltInOne) {
    update("{A}\\Name", "a");
    list_.takeUpdates();
    for (const char* path : {"\\ORVS\\Schedules\\{A}", "\\ORVS\\Schedules\\{A}\\Name", "\\ORVS\\Schedules\\",
                             "\\ORVS\\Events\\{A}\\", "\\ORVS\\Schedules\\{Default}\\"})
        list_.removeKey(path);
    EXPECT_EQ(names(), "All Days, All Day; a");
    EXPECT_FALSE(list_.takeUpdates());
    list_.removeKey("\\ORVS\\Schedules\\{A}\\");
    EXPECT_EQ(names(), "All Days, All Day");
    EXPECT_TRUE(list_.takeUpdates());
}

}  // namespace
}  // namespace orvc
