// Every sentence about Events in each language, as a translator reads it: sentences_en.txt and its sisters. After a
// change of texts, run the test with ORVC_WRITE_SENTENCES=1 and read what has changed.
#include "checker/event_sentence.h"

#include <cstdlib>

#include "checker/problem_text.h"
#include "checker_fixture.h"
#include "script_string_table.h"

namespace orvc {
namespace {

const std::string kProject = ORVC_PROJECT;
constexpr KSMac kUnknown{0x02, 0x4B, 0x53, 0x10, 0x00, 0x09};
constexpr KSMac kNameless{0x02, 0x4B, 0x53, 0x10, 0x00, 0x03};
constexpr std::uint32_t kTriggers = 10;
constexpr std::uint32_t kResponses = 7;

struct Language {
    const char* name;
    const char* script;
};

using Places = std::vector<std::string>;

class EventSentenceTest : public CheckerTest, public testing::WithParamInterface<Language> {
  protected:
    EventSentenceTest() {
        device(kNameless, "");
        EventRecord twin = wholeEvent("{T}");
        twin.name = "Front door at night";
        events_.store(twin);
    }
    static EventRecord event(std::uint32_t trigger, std::uint32_t response) {
        EventRecord record = wholeEvent("{A}");
        record.triggerType = trigger;
        record.timeOfDay = 33;
        record.responseType = response;
        record.messageKey = "chime";
        record.fileGuid = "{F}";
        record.ttsFilename = R"(\\files\fire.txt)";
        return record;
    }
    void title(const char* text) { written_.append(written_.empty() ? "" : "\n").append("# ").append(text) += "\n"; }
    void write(const EventRecord& record) {
        written_ += eventSentence(record, strings_, {directory_, checker_.schedules(), events_}) + "\n";
    }
    template <typename Change>
    void writeWith(std::uint32_t trigger, std::uint32_t response, const Change& change) {
        EventRecord record = event(trigger, response);
        change(record);
        write(record);
    }
    // What changes the words of a response: where it goes, and the delay.
    void writeDestinations(std::uint32_t response, bool hasContent) {
        const bool isEmail = response == static_cast<std::uint32_t>(Response::kEmail);
        for (const std::string& place : isEmail ? Places{"none"} : Places{"device", "group", "none"})
            for (const std::uint32_t delay : {0, 5})
                writeWith(1, response, [&](EventRecord& r) {
                    if (place != "device") r.responseDevice = {};
                    if (place == "group") r.responseGroupKey = "Nurses";
                    r.timeoutType = delay == 0 ? 0 : 1;
                    r.timeoutSeconds = delay;
                    if (!hasContent) r.messageKey = r.fileGuid = r.ttsFilename = "";
                });
    }
    void writeSentences() {
        title("Each trigger with each response");
        for (std::uint32_t trigger = 0; trigger < kTriggers; ++trigger)
            for (std::uint32_t response = 0; response < kResponses; ++response)
                write(event(trigger, response));
        title("Sources: a group, and none");
        for (std::uint32_t trigger = 1; trigger < 8; ++trigger) {
            for (const char* const group : {"Nurses", ""})
                writeWith(trigger, 1, [&](EventRecord& r) { r.triggerDevice = {}, r.triggerGroupKey = group; });
        }
        title("Devices without a name, and unknown");
        writeWith(1, 1, [](EventRecord& r) { r.triggerDevice = kNameless, r.responseDevice = kUnknown; });
        title("Destinations: a device, a group, and none, each without and with a delay");
        for (std::uint32_t response = 1; response < kResponses; ++response)
            writeDestinations(response, true);
        title("The same with nothing to play, to send or to read");
        for (std::uint32_t response = 3; response < kResponses; ++response)
            writeDestinations(response, false);
        title("Schedules: any time, unknown, none; of a button, and of a time of day");
        for (const std::uint32_t trigger : {1, 9})
            for (const char* const schedule : {"{Default}", "{gone}", ""})
                writeWith(trigger, 1, [&](EventRecord& r) { r.scheduleKey = schedule; });
        title("Times of day: the first, noon, the last, and none");
        for (const std::uint32_t time : {0, 48, 95, 96})
            writeWith(9, 1, [&](EventRecord& r) { r.timeOfDay = time; });
        title("Delays");
        for (const std::uint32_t seconds : {0, 1, 59, 60, 61, 120, 3600})
            writeWith(1, 4, [&](EventRecord& r) { r.timeoutType = 1, r.timeoutSeconds = seconds; });
        title("A message, a trigger and a response that the console does not know");
        writeWith(1, 3, [](EventRecord& r) { r.messageKey = "gong"; });
        write(event(10, 7));
    }
    void writeProblems() {
        title("Problems: in the list, and in full");
        const char* const about[kProblemCodeCount] = {"02:4b:53:10:00:09",
                                                      "Ghosts",
                                                      "02:4b:53:10:00:09",
                                                      "Ghosts",
                                                      "Nobody",
                                                      "{gone}",
                                                      "{N}",
                                                      "{N}",
                                                      "gong",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "{T}",
                                                      "EventName, Disabled",
                                                      "",
                                                      "02:4b:53:10:00:01"};
        std::vector<Problem> problems;
        for (std::size_t code = 0; code < kProblemCodeCount; ++code)
            problems.push_back({static_cast<ProblemCode>(code), about[code]});
        problems.push_back({ProblemCode::kMessage, {}});
        problems.push_back({ProblemCode::kTimeOutside, {}});
        for (const Problem& problem : problems)
            written_.append(problemSummary({problem}, strings_)).append(": ") +=
                problemSentence(problem, strings_, {directory_, checker_.schedules(), events_}) + "\n";
        title("Several problems");
        problems.resize(3);
        problems.push_back({ProblemCode::kEmptyGroup, "one"});
        problems.push_back({ProblemCode::kEmptyGroup, "another"});
        written_ += problemSummary(problems, strings_) + "\n";
    }

    const ScriptStringTable strings_{kProject, GetParam().script};
    std::string written_;
};

INSTANTIATE_TEST_SUITE_P(Languages, EventSentenceTest,
                         testing::Values(Language{"en", "orvsconfig.rc"}, Language{"de", "languages/german.rc"},
                                         Language{"fr", "languages/french.rc"}),
                         [](const auto& language) { return std::string(language.param.name); });

TEST_P(EventSentenceTest, EverySentenceIsAsATranslatorHasReadIt) {
    writeSentences();
    writeProblems();
    const std::string path = kProject + "/tests/core/checker/sentences_" + GetParam().name + ".txt";
    if (std::getenv("ORVC_WRITE_SENTENCES") != nullptr) std::ofstream(path, std::ios::binary) << written_;
    EXPECT_EQ(written_, readTextFile(path));
    EXPECT_EQ(written_.find('%'), std::string::npos) << "a placeholder without a value";
}

}  // namespace
}  // namespace orvc
