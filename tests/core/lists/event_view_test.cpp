// Filter, order and selection of the Event list, against an implementation that is too simple to be wrong.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <list>
#include <random>
#include <set>

#include "fake_log_system.h"
#include "fake_string_table.h"
#include "lists/event_table.h"
#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

using Id = EventColumnId;

constexpr std::array kFilters{
    "a",           "a b",       "\"a b\"", "source:a", "SOURCE:\"Dev 1\" c", "b destination:1", "schedule:hours",
    "trigger:#30", "problem:x", "#206 a",  "1970",     "response:#222 b",    "problem:",        "zz"};

class EventViewTest : public testing::Test {
  protected:
    // What a row held when it found its place.
    struct Placed {
        std::array<std::string, kEventColumnCount> texts;
        std::uint32_t lastTriggered = 0;
        std::uint32_t delay = 0;
        int serial = 0;
    };
    struct Entry {
        EventRecord record;
        Placed placed;
    };

    EventViewTest() {
        schedules_.makeDefault();
        for (int i = 0; i < 4; ++i)
            renameDevice(i);
        table_.judgeBy(directory_, [] { return true; });
        table_.nameSchedulesBy(schedules_);
        table_.tellProblemsBy(
            [](const EventRecord& record) { return record.badData == 1u ? "x " + *record.ttsFilename : ""; },
            [](const EventRecord& record) { return record.badData == 1u; });
    }

    unsigned below(unsigned end) { return static_cast<unsigned>(random_()) % end; }
    static KSMac mac(unsigned number) { return {2, 0, 0, 0, 0, static_cast<std::uint8_t>(number + 1)}; }
    std::string word() { return std::string(1, "abAB"[below(4)]) + "bc "[below(3)] + "aB1"[below(3)]; }

    void renameDevice(unsigned number) {
        KSConnectionInfo info{};
        setFieldText(info.deviceName, below(5) == 0 ? "" : formatText("Dev %u%s", below(3), word().c_str()));
        info.mac = mac(number);
        directory_.updateDevice(info, std::nullopt, 0);
    }
    void changeValues(EventRecord& record) {
        record.triggerType = below(11);
        record.triggerDevice = mac(below(6));
        record.triggerGroupKey = "";
        record.responseDevice = KSMac{};
        record.responseGroupKey = below(3) == 0 ? word() : "";
        record.timeOfDay = below(97);
        record.timeoutType = below(2);
        record.timeoutSeconds = below(4) * 60;
        record.scheduleKey = below(2) == 0 ? std::string(kDefaultScheduleKey) : word();
        record.responseType = below(7);
        record.ttsFilename = word();
        record.disabled = below(2);
        record.badData = below(3);
        record.lastTriggered = below(3) * 100'000;
    }

    std::string cellOf(const EventRecord& record, std::size_t column) const {
        return eventColumns()[column].text(record, source_);
    }
    Placed placedNow(const EventRecord& record, int serial) const {
        Placed placed{{}, *record.lastTriggered, eventDelay(record), serial};
        for (std::size_t column = 0; column < kEventColumnCount; ++column)
            placed.texts[column] = foldAscii(cellOf(record, column));
        return placed;
    }
    bool isGiven() const { return keys_.empty(); }
    // A row goes to where it belongs; as the newest when it has another name.
    void place(Entry& entry) {
        const bool hasOldName = entry.placed.serial != 0 && entry.placed.texts[0] == foldAscii(*entry.record.name);
        entry.placed = placedNow(entry.record, hasOldName ? entry.placed.serial : ++serial_);
    }

    bool comesBefore(const Placed& a, const Placed& b) const {
        for (const EventSortKey& key : keys_) {
            const auto column = static_cast<std::size_t>(key.column);
            auto order = a.texts[column].compare(b.texts[column]) <=> 0;
            if (key.column == Id::kLastEvent) order = a.lastTriggered <=> b.lastTriggered;
            if (key.column == Id::kDelay) order = a.delay <=> b.delay;
            if (order != 0) return key.descending ? order > 0 : order < 0;
        }
        return a.texts[0] != b.texts[0] ? a.texts[0] < b.texts[0] : a.serial > b.serial;
    }
    bool isShown(const EventRecord& record) const {
        const std::string status = cellOf(record, 1);
        if (state_ == EventState::kAvailable && status != strings_.text(IDS_STATUS_AVAILABLE)) return false;
        if (state_ == EventState::kDisabled && status != strings_.text(IDS_STATUS_DISABLED)) return false;
        if (state_ == EventState::kWithProblems && record.badData != 1u) return false;
        return std::ranges::all_of(parseFilter(filter_, strings_, foldAscii), [&](const FilterTerm& term) {
            for (std::size_t column = 0; column < kEventColumnCount; ++column)
                if (!term.column || *term.column == static_cast<Id>(column))
                    if (foldAscii(cellOf(record, column)).find(term.text) != std::string::npos) return true;
            return false;
        });
    }
    void expectRows(int step) {
        std::vector<const Entry*> expected;
        for (const Entry& entry : entries_)
            if (isShown(entry.record)) expected.push_back(&entry);
        std::ranges::sort(expected, [&](auto* a, auto* b) { return comesBefore(a->placed, b->placed); });
        ASSERT_EQ(table_.size(), expected.size()) << "step " << step << ", filter " << filter_;
        for (std::size_t row = 0; row < expected.size(); ++row) {
            ASSERT_EQ(&table_.model().at(row), &expected[row]->record) << "step " << step << ", row " << row;
            ASSERT_EQ(table_.model().rowOf(expected[row]->record), row);
        }
        ASSERT_EQ(table_.model().total(), entries_.size());
        std::erase_if(selected_, [&](const EventRecord* record) { return !isShown(*record); });
        const auto selected = table_.model().selectedRecords();
        ASSERT_EQ(std::set<const EventRecord*>(selected.begin(), selected.end()), selected_) << "step " << step;
    }

    // ---- What happens

    void add() {
        Entry& entry = entries_.emplace_back();
        entry.record.key = std::to_string(++keyCount_);
        entry.record.name = word();
        changeValues(entry.record);
        place(entry);
        table_.eventChanged(entry.record, true);
    }
    void change(Entry& entry) {
        const bool renamed = below(3) == 0;
        // No two rows are renamed to the same before a sort: which of them is newer is nobody's matter.
        if (renamed) entry.record.name = word() + std::to_string(++keyCount_);
        changeValues(entry.record);
        if (renamed && isGiven()) place(entry);
        table_.eventChanged(entry.record, renamed);
        if (!isShown(entry.record)) selected_.erase(&entry.record);
    }
    void remove(std::list<Entry>::iterator entry) {
        selected_.erase(&entry->record);
        table_.eventGone(entry->record);
        entries_.erase(entry);
    }
    void sortAnew() {
        if (!isGiven()) std::ranges::for_each(entries_, [&](Entry& entry) { place(entry); });
        table_.sortAnew();
    }
    void sort() {
        if (below(3) == 0) return sortAnew();
        const EventSortKey key{static_cast<Id>(below(kEventColumnCount)), below(2) == 0};
        std::erase_if(keys_, [&](const EventSortKey& each) { return each.column == key.column; });
        keys_.insert(keys_.begin(), key);
        if (key == EventSortKey{}) keys_.clear();
        std::ranges::for_each(entries_, [&](Entry& entry) { place(entry); });
        table_.sortBy(key);
        ASSERT_TRUE(std::ranges::equal(table_.sortKeys(), keys_));
    }
    void filter() {
        filter_ = below(3) == 0 ? "" : kFilters[below(kFilters.size())];
        state_ = below(3) == 0 ? static_cast<EventState>(below(4)) : EventState::kAll;
        table_.filterBy(filter_, state_);
    }
    void changeTexts() {
        const unsigned device = below(4);
        const std::string schedule = word();
        renameDevice(device);
        schedules_.updateVariable({"\\ORVS\\Schedules\\" + schedule + "\\Name", 0, word() + " hours", 0});
        if (below(3) == 0) return table_.allTextsChanged();
        for (const Entry& entry : entries_)
            if (entry.record.triggerDevice == mac(device) || entry.record.scheduleKey == schedule)
                table_.textsChanged(entry.record);
    }
    void select() {
        if (table_.size() == 0) return;
        const std::size_t first = below(static_cast<unsigned>(table_.size()));
        table_.model().setSelected(first, 1, true);
        selected_.insert(&table_.model().at(first));
    }

    Journal journal_;
    JournalLog log_{journal_};
    const FakeStringTable strings_;
    Directory directory_{log_.log};
    ScheduleList schedules_{log_.log, log_.clock};
    EventTable table_{strings_, log_.clock, foldAscii};
    const EventTextSource source_{
        strings_,
        log_.clock,
        &directory_,
        &schedules_,
        [] { return true; },
        [](const EventRecord& record) { return record.badData == 1u ? "x " + *record.ttsFilename : ""; }};

    std::minstd_rand random_{11};
    std::list<Entry> entries_;
    std::vector<EventSortKey> keys_;
    std::string filter_;
    EventState state_ = EventState::kAll;
    std::set<const EventRecord*> selected_;
    int serial_ = 0;
    int keyCount_ = 0;
};

TEST_F(EventViewTest, ManyRandomStepsShowWhatASimpleListWould) {
    for (int step = 0; step < 6'000; ++step) {
        const unsigned what = below(100);
        const auto any = [&] { return std::next(entries_.begin(), below(static_cast<unsigned>(entries_.size()))); };
        if (entries_.size() < 20 || (what < 30 && entries_.size() < 80))
            add();
        else if (what < 55)
            change(*any());
        else if (what < 80)
            remove(any());
        else if (what < 85)
            sort();
        else if (what < 92)
            filter();
        else if (what < 95)
            changeTexts();
        else if (what < 96)
            table_.prepareTexts(below(30));
        else
            select();
        if (step % 7 == 0 || what >= 80) expectRows(step);
        if (HasFatalFailure()) return;
    }
}

// Texts that nobody shows any more are forgotten now and then; the numbers of the others change.
TEST_F(EventViewTest, TextsThatComeAndGoByTheThousandDoNoHarm) {
    for (int i = 0; i < 50; ++i)
        add();
    table_.sortBy({Id::kContent, false});
    keys_ = {{Id::kContent, false}};
    std::ranges::for_each(entries_, [&](Entry& entry) { place(entry); });
    table_.filterBy(filter_ = "trigger:#30 b", EventState::kAll);
    for (int round = 0; round < 400; ++round) {
        for (Entry& entry : entries_) {
            entry.record.responseType = static_cast<std::uint32_t>(Response::kTtsFile);
            entry.record.ttsFilename = formatText("file %d %u %s", round, below(100'000), below(2) == 0 ? "qq" : "");
            entry.record.name = std::string(static_cast<std::size_t>(round), 'x') + word();
            table_.eventChanged(entry.record, true);
        }
        if (round % 100 == 50) add();
        if (round % 100 == 99) sortAnew();
        if (round <= 150)
            table_.filterBy(filter_ = round < 150 ? "trigger:#30 xa" : "trigger:#30 qq", EventState::kAll);
        if (round < 150 || round % 50 == 0) expectRows(round);
    }
}

TEST_F(EventViewTest, AFilterMayHaveAnyNumberOfTerms) {
    std::string words;
    for (int i = 0; i < 100; ++i)
        words += formatText("<%02d>%s ", i, i % 2 == 0 ? "" : "x");
    add();
    entries_.front().record.name = words;
    entries_.front().record.ttsFilename = words;
    table_.eventChanged(entries_.front().record, true);
    for (const bool isThere : {true, false}) {
        std::string terms = isThere ? "" : "zz ";
        for (int i = 99; i >= 0; --i)
            terms += formatText("%02d> ", i);
        table_.filterBy(terms, EventState::kAll);
        EXPECT_EQ(table_.size(), isThere ? 1u : 0u);
    }
}

TEST_F(EventViewTest, FilterOrderAndSelectionStayWhenAllEventsGoAndComeAgain) {
    table_.filterBy(filter_ = "a", EventState::kAll);
    table_.sortBy({Id::kStatus, true});
    keys_ = {{Id::kStatus, true}};
    for (int i = 0; i < 300; ++i)
        add();
    expectRows(1);
    table_.model().selectAll();
    const std::string key = table_.selectedRecord()->key;
    table_.eventsCleared();
    entries_.clear();
    EXPECT_EQ(table_.selectedRecord(), nullptr);
    for (int i = 0; i < 20; ++i)
        add();
    Entry& again = entries_.emplace_back();
    again.record.key = key;
    again.record.name = "a";
    changeValues(again.record);
    place(again);
    table_.eventChanged(again.record, true);
    selected_ = {&again.record};
    expectRows(2);
    sortAnew();
    table_.allTextsChanged();
    EXPECT_FALSE(table_.prepareTexts(1'000));
    expectRows(3);
}

}  // namespace
}  // namespace orvc
