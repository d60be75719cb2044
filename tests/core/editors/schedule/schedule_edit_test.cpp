#include "editors/schedule/schedule_edit.h"

#include <gtest/gtest.h>

namespace orvc {
namespace {

class NoLog final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}
};

// The list works on a link that is not open: what reaches the server is for the tests of the dialogs.
class ScheduleEditTest : public testing::Test {
  protected:
    void receive(const std::string& field, const std::string& text) {
        const std::string name = "\\ORVS\\Schedules\\{K}\\" + field;
        schedules_.updateScheduleVariables({name, 0xC0000001, text, 0});
    }
    void receiveSchedule() {
        receive("Name", "Nights");
        receive("Hours", "01" + std::string(82, '0'));
    }

    NoLog noLog_;
    SystemClock clock_;
    TrackingLog log_{noLog_, clock_};
    KSServerLink link_;
    ScheduleList schedules_{link_, log_, clock_};
};

TEST_F(ScheduleEditTest, ANewScheduleIsListedWhenItIsSavedOnly) {
    schedules_.makeDefault();
    ScheduleEdit edit("{New}");
    EXPECT_EQ(edit.record().name, "");
    EXPECT_EQ(edit.record().hours, WeekMask{});
    edit.cancel(schedules_);
    EXPECT_EQ(schedules_.find("{New}"), nullptr);
    edit.record().name = "Mornings";
    edit.save(schedules_);
    ASSERT_NE(schedules_.find("{New}"), nullptr);
    EXPECT_EQ(schedules_.records().size(), 2u);
    EXPECT_EQ(schedules_.find("{New}")->name, "Mornings");
}

TEST_F(ScheduleEditTest, OnlyDaysThatWereChangedComeBack) {
    for (const bool saves : {true, false}) {
        schedules_.clear();
        receiveSchedule();
        ScheduleEdit edit(*schedules_.find("{K}"));
        edit.record().name = "Evenings";
        edit.record().hours->set(3, 40);
        // Another console changes the Schedule meanwhile.
        receive("Name", "Late");
        receive("Hours", "02" + std::string(70, '0') + "ff0000000000");
        if (saves)
            edit.save(schedules_);
        else
            edit.cancel(schedules_);
        const ScheduleRecord& listed = *schedules_.find("{K}");
        EXPECT_EQ(listed.name, saves ? "Evenings" : "Late");
        EXPECT_FALSE(listed.hours->isSet(0, 0));
        EXPECT_TRUE(listed.hours->isSet(0, 1));
        EXPECT_TRUE(listed.hours->isSet(3, 40));
        EXPECT_TRUE(listed.hours->isSet(6, 0));
    }
}

TEST_F(ScheduleEditTest, WhatWasEnteredIsSavedWhenTheListWasEmptied) {
    receiveSchedule();
    ScheduleEdit edit(*schedules_.find("{K}"));
    edit.record().name = "Evenings";
    schedules_.clear();
    edit.cancel(schedules_);
    EXPECT_EQ(schedules_.find("{K}"), nullptr);
    edit.save(schedules_);
    ASSERT_NE(schedules_.find("{K}"), nullptr);
    EXPECT_EQ(schedules_.find("{K}")->name, "Evenings");
    EXPECT_TRUE(schedules_.find("{K}")->hours->isSet(0, 0));
    // The values that come after the next logon find it.
    receive("Name", "Nights");
    EXPECT_EQ(schedules_.records().size(), 2u);
}

TEST_F(ScheduleEditTest, UpdatesAreToldOnce) {
    EXPECT_FALSE(schedules_.takeUpdates());
    receiveSchedule();
    EXPECT_TRUE(schedules_.takeUpdates());
    EXPECT_FALSE(schedules_.find("{K}")->updated);
    EXPECT_FALSE(schedules_.takeUpdates());
    schedules_.clear();
    EXPECT_TRUE(schedules_.takeUpdates());
    EXPECT_FALSE(schedules_.takeUpdates());
}

}  // namespace
}  // namespace orvc
