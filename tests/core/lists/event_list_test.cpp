#include "model/event_list.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "fake_string_table.h"
#include "lists/event_table.h"

namespace orvc {
namespace {

std::string lowerCase(std::string_view name) {
    std::string key(name);
    for (char& c : key)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return key;
}

class EventListTest : public ::testing::Test {
  protected:
    bool update(const std::string& path, const std::string& text, std::uint32_t number = 0) {
        return list_.updateVariable({"\\ORVS\\Events\\" + path, 0, text, number});
    }
    // An Event that is shown as soon as its marker arrives.
    void show(const std::string& key, const std::string& name) {
        update(key + "\\EventName", name);
        update(key + "\\completeBits", "", 0);
    }
    std::string rows() {
        Journal names;
        for (std::size_t i = 0; i < table_.size(); ++i) {
            const EventRecord& record = table_.model().at(i);
            EXPECT_EQ(table_.model().rowOf(record), i);
            names.add(record.name.value_or("(none)"));
        }
        return names.take();
    }

    Journal journal_;
    JournalLog log_{journal_};
    const FakeStringTable strings_;
    EventTable table_{strings_, log_.clock, lowerCase};
    EventList list_{table_, log_.log, log_.clock};
};

TEST_F(EventListTest, OnlyNamesBelowAnEventsKeyAreClaimed) {
    for (const char* name : {"\\ORVS\\Events\\{A}", "\\ORVS\\Events\\", "\\ORVS\\Event\\{A}\\EventName",
                             "\\ORVS\\events\\{A}\\EventName", ""})
        EXPECT_FALSE(list_.updateVariable({name, 0, "x"})) << name;
    EXPECT_EQ(list_.size(), 0u);
    EXPECT_TRUE(update("{A}\\eventName", "x"));
    EXPECT_EQ(journal_.take(), "log: updateEventSystemVariable: variable 'eventName' not found");
}

TEST_F(EventListTest, ARowAppearsOnceItsRecordIsCompleteOrOverdue) {
    for (const char* field : {"ResponseGroupKey", "ScheduleKey", "TriggerGroupKey"})
        update(std::string("{A}\\") + field, "");
    for (const char* field : {"completeBits", "Disabled", "EventTriggerType", "EventResponseType"})
        update(std::string("{A}\\") + field, "", 1);
    EXPECT_EQ(rows(), "");
    update("{A}\\EventName", "whole");
    update("{B}\\completeBits", "", 0);
    EXPECT_EQ(rows(), "(none); whole") << "nothing is required of the second";
    update("{C}\\completeBits", "", 1);
    log_.clock.seconds += 500;
    update("{C}\\EventName", "late");
    EXPECT_EQ(rows(), "(none); whole");
    log_.clock.seconds += 1;
    update("{C}\\EventName", "late");
    EXPECT_EQ(rows(), "(none); late; whole");
}

TEST_F(EventListTest, NamesAreOrderedWithoutCaseAndTheNewestOfEqualsIsFirst) {
    for (const char* name : {"beta", "Alpha", "ALPHA", "", "alphabet", "\xFF", "%s"})
        show(std::string("k").append(name), name);
    update("nameless\\completeBits", "", 0);
    EXPECT_EQ(rows(), "(none); ; %s; ALPHA; Alpha; alphabet; beta; \xFF");
    list_.remove(*list_.find("kAlpha"));
    EXPECT_EQ(rows(), "(none); ; %s; ALPHA; alphabet; beta; \xFF");
}

TEST_F(EventListTest, ManyThatComeAtOnceStandAsIfEachHadFoundItsRow) {
    std::vector<std::string> expected;
    for (int i = 0; i < 2'000; ++i) {
        const std::string name = formatText("%03d", i * 7 % 400);  // each name five times
        expected.insert(std::lower_bound(expected.begin(), expected.end(), name), name + formatText(" %04d", i));
        show(formatText("{%04d}", i), name);
        if (i % 700 == 0) rows();
    }
    for (std::size_t i = 0; i < expected.size(); ++i)
        ASSERT_EQ(*table_.model().at(i).name + " " + table_.model().at(i).key.substr(1, 4), expected[i]);
}

TEST_F(EventListTest, ARenamedEventGoesToTheRowOfItsName) {
    show("{1}", "b");
    show("{2}", "a");
    update("{2}\\EventName", "c");
    EXPECT_EQ(rows(), "b; c");
    EventRecord saved = *list_.find("{2}");
    saved.name = "a";
    saved.lastTriggered = 1;
    update("{2}\\lastTriggered", "", 7);
    EXPECT_EQ(&list_.store(saved), list_.find("{2}"));
    EXPECT_EQ(rows(), "a; b");
    EXPECT_EQ(list_.find("{2}")->lastTriggered, 7u);  // what the server told while the editor was open stays
}

TEST_F(EventListTest, AnOverdueEventGetsItsRowByItself) {
    update("{late}\\completeBits", "", 1);
    update("{never}\\EventName", "without its marker");
    log_.clock.seconds += 100;
    update("{later}\\completeBits", "", 1);
    log_.clock.seconds += 400;
    list_.showOverdue();
    EXPECT_EQ(rows(), "");
    log_.clock.seconds += 1;
    list_.showOverdue();
    EXPECT_EQ(rows(), "(none)");
    log_.clock.seconds += 100;
    list_.showOverdue();
    EXPECT_EQ(rows(), "(none); (none)");
}

TEST_F(EventListTest, ADeletedKeyTakesItsRecordAlong) {
    show("{1}", "a");
    show("{2}", "b");
    for (const char* path : {"\\ORVS\\Events\\{1}", "\\ORVS\\Events\\{1}\\EventName", "\\ORVS\\Events\\",
                             "\\ORVS\\Events\\{3}\\", "\\ORVS\\Schedules\\{1}\\"})
        list_.removeKey(path);
    EXPECT_EQ(rows(), "a; b");
    for (const char* key : {"{1}", "{2}"})  // the second was updated last
        list_.removeKey(std::string("\\ORVS\\Events\\").append(key).append("\\"));
    EXPECT_EQ(rows(), "");
    show("{2}", "again");
    show("{1}", "again");
    EXPECT_EQ(rows(), "again; again") << "nothing is left of those before";
}

}  // namespace
}  // namespace orvc
