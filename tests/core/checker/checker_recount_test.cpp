// Random changes of everything, each followed by a slow recount of what the checker keeps.
#include <map>
#include <random>

#include "checker/event_sentence.h"
#include "checker/problem_rules.h"
#include "checker/problem_text.h"
#include "checker_fixture.h"
#include "model/mac.h"

namespace orvc {
namespace {

// Every text shows all that is filled into it.
struct ShowingTable final : StringTable {
    std::string text(unsigned id) const override { return std::to_string(id) + " %s %s %s"; }
};

using Keys = std::multiset<std::string>;

class CheckerRecountTest : public CheckerTest {
  protected:
    unsigned roll(unsigned sides) { return static_cast<unsigned>(random_() % sides); }
    // Few of each, so that Events share them; some are never there, and some Schedules are named like others' keys.
    std::string pick(const char* kind, unsigned count) { return kind + std::to_string(roll(count)); }
    KSMac someMac() {
        const unsigned which = roll(5);
        return which == 0 ? KSMac{} : KSMac{2, 0, 0, 0, 0, static_cast<std::uint8_t>(which)};
    }
    std::string someScheduleText() { return roll(6) == 0 ? "{Default}" : pick("s", 5); }
    std::string someGroup() { return roll(3) == 0 ? "" : pick("g", 4); }

    EventRecord someEvent() {
        EventRecord record;
        // Often like another one.
        if (const EventRecord* const other = anEvent(); other != nullptr && roll(2) == 0) record = *other;
        record.key = pick("e", 8);
        if (!record.name) fill(record);
        return record;
    }
    void fill(EventRecord& record) {
        record.name = pick("n", 3);
        record.completeBits = 1;
        record.triggerType = roll(4) == 0 ? roll(11) : 1;
        record.triggerDevice = someMac();
        record.triggerGroupKey = someGroup();
        record.timeOfDay = roll(100);
        record.scheduleKey = someScheduleText();
        record.responseType = roll(8);
        record.responseDevice = someMac();
        record.responseGroupKey = someGroup();
        record.messageKey = roll(3) == 0 ? "" : pick("m", 3);
        record.fileGuid = roll(2) == 0 ? "" : "{F}";
        record.disabled = roll(4) == 0 ? 1 : 0;
        record.badData = roll(4) == 0 ? 1 : 0;
    }
    EventRecord* anEvent() { return events_.find(pick("e", 8)); }
    const ScheduleRecord* aSchedule() { return schedules_.find(pick("s", 5)); }

    // One change. Returns the key of the Event whose record it was, if it was one's.
    std::string change() {
        switch (roll(20)) {
            case 0:
            case 1:
                return changeField(anEvent());
            case 2:
                if (EventRecord* const record = anEvent()) events_.remove(*record);
                return {};
            case 3:
            case 4:
                device(someMac(), roll(2) == 0 ? "" : pick("d", 3));
                return {};
            case 5:
                directory_.disconnectDevice(someMac());
                return {};
            case 6:
                group(roll(4), pick("g", 4), roll(8) == 0 ? 1 : 0);
                return {};
            case 7:
                directory_.doNewGroupMember(roll(4), kGate);
                return {};
            case 8:
                message(pick("m", 3), pick("d", 3));
                return {};
            case 9:
            case 10:
                schedule(pick("s", 5), roll(2) == 0 ? "Name" : "Key", pick("s", 5));
                return {};
            case 11:
                schedule(pick("s", 5), "Hours", std::string(kHoursTextLength, "00f3"[roll(4)]));
                return {};
            case 12:
                return changeSchedule(aSchedule());
            case 13:
                mailHost(roll(2) == 0 ? "" : "mail");
                return {};
            case 14:
                checker_.setNotStored(pick("e", 8), std::vector<std::string>(roll(2), "value"));
                return {};
            case 15:
                return changeAll();
            default:
                return events_.store(someEvent()).key;
        }
    }
    std::string changeField(EventRecord* record) {
        if (record == nullptr) return {};
        const std::string key = record->key;
        EventRecord other;
        fill(other);
        const std::string path = joinPath(kEventsPath, key) + "\\";
        const VariableValues values = eventValues(other, true);
        const VariableValue& value = values[roll(static_cast<unsigned>(values.size()))];
        const std::string name = path + value.name.substr(value.name.rfind('\\') + 1);
        const std::uint32_t number = name.ends_with("completeBits") && roll(2) == 0 ? 0xFFFFFFFF : value.number;
        events_.updateVariable({name, 0, value.text, number});
        return key;
    }
    std::string changeSchedule(const ScheduleRecord* schedule) {
        if (schedule == nullptr) return {};
        const unsigned which = roll(3);
        if (which == 0) {
            schedules_.remove(*schedule);
        } else if (which == 1) {
            schedules_.setHours(*schedule, roll(2) == 0 ? WeekMask() : WeekMask::everySlot());
        } else {
            ScheduleRecord saved = *schedule;
            saved.name = pick("s", 5);
            schedules_.store(saved);
        }
        return {};
    }
    std::string changeAll() {
        const unsigned which = roll(12);
        if (which == 0) events_.clear();
        if (which == 1) directory_.clear();
        if (which == 2) schedules_.clear();
        if (which == 3) mail_.clear();
        if (which > 9) {
            checker_.setReady(false);
            checker_.setReady(true);
        }
        return {};
    }

    // ---- The slow way

    static bool isSame(const EventRecord& a, const EventRecord& b, const ScheduleFinder& finder) {
        const auto deed = [&](const EventRecord& record) {
            return deedOf(record, finder.find(receivedText(record.scheduleKey)));
        };
        return &a != &b && deed(a) && deed(a) == deed(b);
    }
    // Names of the problems; where an Event does the same as several, any of them may be told.
    Keys slowProblems(const EventRecord& record, const ScheduleFinder& finder, const std::vector<Problem>& known) {
        std::vector<Problem> problems = findProblems(record, directory_, finder, mail_);
        for (const Problem& problem : known) {
            if (problem.code == ProblemCode::kNotStored) problems.push_back(problem);
            const EventRecord* const twin = events_.find(problem.about);
            if (problem.code == ProblemCode::kSameAs && twin != nullptr && isSame(record, *twin, finder))
                problems.push_back(problem);
        }
        const bool hasTwin = std::ranges::any_of(
            events_.records(), [&](const auto& other) { return other.isShown && isSame(record, other, finder); });
        const bool isToldTwin = std::ranges::find(problems, ProblemCode::kSameAs, &Problem::code) != problems.end();
        EXPECT_EQ(hasTwin, isToldTwin) << record.key;
        const bool hasOther = std::ranges::any_of(problems, [](const Problem& problem) {
            return !isHint(problem.code) && problem.code != ProblemCode::kBadData;
        });
        Keys names;
        for (const auto& [code, about] : problems)
            if (code != ProblemCode::kBadData || !hasOther) names.insert(std::string(problemName(code)) + " " + about);
        return names;
    }
    static Keys keysOf(const std::vector<const EventRecord*>& records) {
        Keys keys;
        for (const EventRecord* const record : records)
            keys.insert(record->key);
        return keys;
    }
    template <typename Uses>
    Keys slowUsers(const Uses& uses) const {
        Keys keys;
        for (const EventRecord& record : events_.records())
            if (record.isShown && uses(record)) keys.insert(record.key);
        return keys;
    }
    void expectExactIndex(const ScheduleFinder& finder) {
        const EventIndex& index = checker_.index();
        for (std::uint8_t tail = 1; tail < 5; ++tail) {
            const KSMac mac{2, 0, 0, 0, 0, tail};
            const Keys expected = slowUsers([&](const EventRecord& r) {
                return (hasSourcePlace(r) && r.triggerDevice == mac) ||
                       (hasDestinationPlace(r) && r.responseDevice == mac);
            });
            EXPECT_EQ(keysOf(index.usersOfDevice(mac)), expected);
            EXPECT_EQ(index.countUsersOfDevice(mac), expected.size());
        }
        for (unsigned i = 0; i < 5; ++i) {
            const std::string number = std::to_string(i);
            EXPECT_EQ(keysOf(index.usersOfGroup("g" + number)), slowUsers([&](const EventRecord& r) {
                          return r.triggerGroupKey == "g" + number || r.responseGroupKey == "g" + number;
                      }));
            EXPECT_EQ(keysOf(index.usersOfMessage("m" + number)), slowUsers([&](const EventRecord& r) {
                          return responseOf(r) == Response::kServerAudio && r.messageKey == "m" + number;
                      }));
            const ScheduleRecord* const schedule = finder.find("s" + number);
            if (schedule == nullptr || schedule->key != "s" + number) continue;
            const Keys expected =
                slowUsers([&](const EventRecord& r) { return finder.find(receivedText(r.scheduleKey)) == schedule; });
            EXPECT_EQ(keysOf(index.usersOfSchedule("s" + number)), expected);
            EXPECT_EQ(index.countUsersOfSchedule("s" + number), expected.size());
        }
    }
    void expectExactProblems(const ScheduleFinder& finder) {
        std::size_t withProblems = 0;
        std::size_t disabled = 0;
        for (const EventRecord& record : events_.records()) {
            const std::vector<Problem> problems = checker_.problemsOf(record);
            Keys names;
            for (const auto& [code, about] : problems)
                names.insert(std::string(problemName(code)) + " " + about);
            EXPECT_EQ(names, record.isShown ? slowProblems(record, finder, problems) : Keys()) << record.key;
            if (!record.isShown) continue;
            disabled += isDisabled(record) ? 1 : 0;
            withProblems += std::ranges::any_of(problems, [](const Problem& p) { return !isHint(p.code); }) ? 1 : 0;
        }
        EXPECT_EQ(checker_.withProblems(), withProblems);
        EXPECT_EQ(checker_.disabled(), disabled);
    }
    // All that an Event's row and its detail line may show.
    std::map<std::string, std::string> texts(const ScheduleFinder& finder) const {
        const EventNames names{directory_, finder, events_};
        std::map<std::string, std::string> texts;
        for (const EventRecord& record : events_.records()) {
            if (!record.isShown) continue;
            std::string& text = texts[record.key] = eventSentence(record, strings_, names);
            for (const Problem& problem : checker_.problemsOf(record))
                text += "\n" + problemSentence(problem, strings_, names);
        }
        return texts;
    }

    std::mt19937 random_;
    const ShowingTable strings_;
};

TEST_F(CheckerRecountTest, AfterEachOfManyChangesAllIsAsASlowRecountFindsIt) {
    for (unsigned seed = 1; seed <= 4; ++seed) {
        random_.seed(seed);
        checker_.setReady(true);
        std::map<std::string, std::string> before = texts(ScheduleFinder(schedules_));
        for (int step = 0; step < 1500 && !HasFailure(); ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
            affected_ = {};
            const std::string own = change();
            const ScheduleFinder finder(schedules_);
            expectExactIndex(finder);
            expectExactProblems(finder);
            std::map<std::string, std::string> after = texts(finder);
            for (const auto& [key, text] : after) {
                const bool isHeard = affected_.all || key == own || affected_.keys.contains(key);
                if (isHeard || !before.contains(key)) continue;
                EXPECT_EQ(text, before.at(key)) << key << " was not told";
            }
            before = std::move(after);
        }
    }
}

}  // namespace
}  // namespace orvc
