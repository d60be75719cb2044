#include "editors/schedule/schedule_edit.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"

namespace orvc {
namespace {

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

    Journal journal_;
    JournalLog log_{journal_};
    ScheduleList schedules_{log_.log, log_.clock};
};

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
            schedules_.store(*edit.change(schedules_).after);
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
    schedules_.store(*edit.change(schedules_).after);
    ASSERT_NE(schedules_.find("{K}"), nullptr);
    EXPECT_EQ(schedules_.find("{K}")->name, "Evenings");
    EXPECT_TRUE(schedules_.find("{K}")->hours->isSet(0, 0));
    // The values that come after the next logon find it.
    receive("Name", "Nights");
    EXPECT_EQ(schedules_.records().size(), 2u);
}

}  // namespace
}  // namespace orvc
