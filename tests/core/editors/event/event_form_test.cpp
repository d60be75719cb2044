#include "editors/event/event_form.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

const EventEmail kEmail{"f", "t", "", "", "s", "b"};
const EventEmail kWithoutSubject{"f", "t", "", "", "", "b"};

class EventFormTest : public EditorTest {
  protected:
    EventFormTest() { setUpInstallation(); }
    // The controls that can be used: T(rigger) s(ource) t(imeout) v(alue and unit) S(chedule) R(esponse) D(estination)
    // B(utton Select) !(Save).
    static std::string enabled(const EventForm& form) {
        const EventFormEnabling e = form.enabling();
        const std::pair<bool, char> controls[] = {
            {e.trigger, 'T'},  {e.source, 's'},   {e.timeout, 't'},     {e.timeoutValueAndUnit, 'v'},
            {e.schedule, 'S'}, {e.response, 'R'}, {e.destination, 'D'}, {e.select, 'B'},
            {e.save, '!'}};
        std::string letters;
        for (const auto& [can, letter] : controls)
            if (can) letters += letter;
        return letters;
    }
    static void chooseResponse(EventForm& form, Response response) {
        const auto offered = responsesFor(form.trigger());
        const auto found = std::ranges::find(offered, response);
        ASSERT_NE(found, offered.end());
        form.chooseResponse(static_cast<int>(found - offered.begin()));
    }
    // A new form that is complete up to the response.
    EventForm formWith(Response response) const {
        EventForm form = newForm();
        form.setName("New");
        form.chooseTrigger(2);
        form.chooseSource(1);
        form.chooseSchedule(2);
        chooseResponse(form, response);
        return form;
    }
    // The ids of the messages' texts, in order.
    static std::vector<unsigned> messages(EventForm& form, const EventRecord& record) {
        std::vector<unsigned> texts;
        for (const LoadMessage& message : form.load(record).messages)
            texts.push_back(message.text);
        return texts;
    }
};

TEST_F(EventFormTest, EachStepOpensWhenTheOneBeforeIsComplete) {
    EventForm form = newForm();
    const struct {
        std::function<void()> step;
        const char* enabled;
    } steps[] = {
        {[] {}, ""},
        {[&] { form.setName("x"); }, "T"},
        {[&] { form.chooseTrigger(1); }, "Tst"},
        {[&] { form.chooseSource(3); }, "Tst"},
        {[&] { form.chooseTimeout(2); }, "Tstv"},
        {[&] { form.chooseTimeoutValue(1); }, "TstvS"},
        {[&] { form.chooseTimeout(1); }, "TstS"},
        {[&] { form.chooseTimeout(2); }, "Tstv"},  // the value went with the choice
        {[&] { form.chooseTimeout(1); }, "TstS"},
        {[&] { form.chooseSchedule(2); }, "TstSR"},
        {[&] { chooseResponse(form, Response::kActivateRelay); }, "TstSRD"},
        {[&] { form.chooseDestination(2); }, "TstSRD!"},
        {[&] { form.setName(""); }, ""},
        {[&] { form.setName("y"); }, "TstSRD!"},
        {[&] { chooseResponse(form, Response::kDeactivateRelay); }, "TstSRD!"},
        {[&] { chooseResponse(form, Response::kServerAudio); }, "TstSRDB"},
        {[&] { form.setMessageKey("gone"); }, "TstSRDB!"},  // a key that is not known counts
        {[&] { form.chooseDestination(0); }, "TstSRDB"},
        {[&] { chooseResponse(form, Response::kTtsFile); }, "TstSRDB"},
        {[&] { form.setTtsFilename("f"); }, "TstSRDB"},
        {[&] { form.chooseDestination(3); }, "TstSRDB!"},
        {[&] { chooseResponse(form, Response::kTtsMessage); }, "TstSRDB"},
        {[&] { form.setSpokenText("t"); }, "TstSRDB!"},
        {[&] { chooseResponse(form, Response::kEmail); }, "TstSRB"},
        {[&] { form.setEmail(kWithoutSubject); }, "TstSRB"},
        {[&] { form.setEmail(kEmail); }, "TstSRB!"},
        {[&] { form.chooseTrigger(8); }, "TsSRB!"},
        {[&] { form.chooseTrigger(9); }, "Ts"},
        {[&] { form.chooseSource(1); }, "TsSRB!"},
        {[&] { form.chooseSchedule(0); }, "TsS"},
        {[&] { form.chooseSource(0); }, "Ts"},
        {[&] { form.chooseTrigger(0); }, "T"},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        steps[i].step();
        EXPECT_EQ(enabled(form), steps[i].enabled) << "step " << i;
    }
}

TEST_F(EventFormTest, AnotherTriggerKeepsWhatFitsIt) {
    EventForm form = formWith(Response::kActivateRelay);
    form.chooseDestination(1);
    for (const int trigger : {1, 5, 3}) {  // of the same kind
        form.chooseTrigger(trigger);
        EXPECT_EQ(form.timeoutIndex(), trigger == 1 ? 0 : 2);
        form.chooseTimeout(2);
        form.chooseTimeoutValue(30);
        form.chooseTimeoutUnit(1);
        EXPECT_EQ(std::tuple(form.sourceIndex(), form.timeoutIndex(), form.timeoutValue()), std::tuple(1, 2, 30));
    }
    const unsigned filled = form.sourceRevision();
    for (const int trigger : {2, 4, 6, 7}) {  // without a timeout
        form.chooseTrigger(trigger);
        EXPECT_EQ(std::tuple(form.sourceIndex(), form.timeoutIndex(), form.timeoutValue(), form.timeoutUnit()),
                  std::tuple(1, 0, 0, 0));
    }
    EXPECT_EQ(form.sourceRevision(), filled) << "the list was not filled anew";
    form.chooseTrigger(9);
    EXPECT_EQ(std::tuple(form.sourceKind(), form.sourceIndex()), std::tuple(SourceKind::kTimesOfDay, 0));
    EXPECT_EQ(std::tuple(form.response(), form.destinationIndex()), std::tuple(Response::kActivateRelay, 1));
    form.chooseTrigger(8);  // a lost server reaches no device
    EXPECT_EQ(form.otherSources(), std::vector<std::string>{strings_.text(IDS_SOURCE_SERVER)});
    EXPECT_EQ(std::tuple(form.responseTexts().size(), form.responseIndex(), form.responseLine()),
              std::tuple(2u, 0, std::string()));
    form.chooseResponse(1);
    form.chooseTrigger(7);
    EXPECT_EQ(form.responseIndex(), 6) << "e-mail is the last of the whole list";
    EXPECT_EQ(std::tuple(form.sourceIndex(), form.scheduleIndex()), std::tuple(0, 2));
}

TEST_F(EventFormTest, TheTimesOfDayAreNinetySixQuartersBehindThePlaceholder) {
    const std::vector<std::string> texts = listTimesOfDay(strings_);
    ASSERT_EQ(texts.size(), 97u);
    const std::pair<std::size_t, const char*> expected[] = {{0, "#313"},      {1, "#314"},      {2, "12:15 AM"},
                                                            {5, "01:00 AM"},  {48, "11:45 AM"}, {49, "#315"},
                                                            {50, "12:15 PM"}, {53, "01:00 PM"}, {96, "11:45 PM"}};
    for (const auto& [index, text] : expected)
        EXPECT_EQ(texts[index], text);
    EventRecord record = completeRecord(Response::kActivateRelay);
    record.triggerType = 9;
    record.timeOfDay = 95;
    EventForm form = newForm();
    form.load(record);
    EXPECT_EQ(form.sourceIndex(), 96);
    form.fill(record);
    EXPECT_EQ(std::tuple(record.timeOfDay, record.triggerDevice), std::tuple(95u, KSMac{}));
}

TEST_F(EventFormTest, TheResponseLineAsksAndTells) {
    const struct {
        Response response;
        int destination;
        const char *payload, *line;
    } cases[] = {
        {Response::kNone, 0, "", ""},
        {Response::kActivateRelay, 0, "", "choose for on"},
        {Response::kActivateRelay, 1, "", "Relay on"},
        {Response::kDeactivateRelay, 0, "", "choose for off"},
        {Response::kDeactivateRelay, 3, "", "Relay off"},
        {Response::kServerAudio, 0, "", "choose for audio"},
        {Response::kServerAudio, 1, "", "choose audio"},
        {Response::kServerAudio, 1, "chime", "Play 'Chime'"},
        {Response::kServerAudio, 0, "%d", "key '%d' not found"},
        {Response::kTtsFile, 0, "", "choose for TTS"},
        {Response::kTtsFile, 1, "", "choose TTS"},
        {Response::kTtsFile, 1, "%s\\f", "File '%s\\f'"},
        {Response::kTtsMessage, 0, "", "choose for TTS"},
        {Response::kTtsMessage, 1, "", "choose TTS"},
        {Response::kTtsMessage, 1, "Go", "Say 'Go'"},
        {Response::kEmail, 0, "", "choose e-mail"},
        {Response::kEmail, 0, "body", "To 't', 's'"},
    };
    for (const auto& c : cases) {
        EventForm form = formWith(c.response);
        form.chooseDestination(c.destination);
        if (c.response == Response::kServerAudio) form.setMessageKey(c.payload);
        if (c.response == Response::kTtsFile) form.setTtsFilename(c.payload);
        if (c.response == Response::kTtsMessage) form.setSpokenText(c.payload);
        if (c.response == Response::kEmail) form.setEmail({"f", "t", "", "", "s", c.payload});
        EXPECT_EQ(form.responseLine(), c.line);
    }
}

TEST_F(EventFormTest, ALongTextIsShortened) {
    const std::string s61(61, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"", "-"},          {"\r\n\t", "-"}, {"\r\n text", " text"},   {"a\r\nb", "a..."}, {"caf\xE9", "caf..."},
        {"t\x7F", "t\x7F"}, {s61, s61},      {s61 + "y", s61 + "..."}, {"\n" + s61, s61},  {s61 + "\n", s61 + "..."},
    };
    for (const auto& [text, shown] : cases)
        EXPECT_EQ(shortenForDisplay(text, "-"), shown) << text;
}

TEST_F(EventFormTest, LoadingReportsEachThingThatIsGoneInOrder) {
    const struct {
        void (*spoil)(EventRecord&);
        std::vector<unsigned> messages;
        const char* enabled;
    } cases[] = {
        {[](EventRecord&) {}, {}, "TstSRDB!"},
        {[](EventRecord& r) { r.triggerDevice = {1}; }, {IDS_NO_SOURCE}, "Tst"},
        {[](EventRecord& r) { r.scheduleKey = "{X}"; }, {IDS_NO_SCHEDULE}, "TstS"},
        {[](EventRecord& r) { r.responseType = 7; }, {IDS_NO_RESPONSE}, "TstSR"},
        {[](EventRecord& r) { r.responseGroupKey = "gone"; }, {IDS_NO_DESTINATION}, "TstSRDB"},
        {[](EventRecord& r) { r.triggerType = 9, r.timeOfDay = 96; }, {IDS_NO_TIME_OF_DAY}, "Ts"},
        {[](EventRecord& r) { r.triggerType = 8; }, {IDS_NO_RESPONSE}, "TsSR"},  // it offers e-mail only
        {[](EventRecord& r) { r.triggerType = 10, r.triggerDevice = {}; }, {IDS_NO_SOURCE}, "T"},
        {[](EventRecord& r) { r.triggerType.reset(), r.triggerGroupKey = "Nurses"; }, {}, "T"},
        {[](EventRecord& r) { r = EventRecord(); }, {IDS_NO_SOURCE, IDS_NO_SCHEDULE}, ""},
        {[](EventRecord& r) { r.triggerDevice = {1}, r.scheduleKey = "", r.responseGroupKey = ""; },
         {IDS_NO_SOURCE, IDS_NO_SCHEDULE, IDS_NO_DESTINATION},
         "Tst"},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EventRecord record = completeRecord(Response::kServerAudio);
        cases[i].spoil(record);
        EventForm form = newForm();
        EXPECT_EQ(messages(form, record), cases[i].messages) << "case " << i;
        EXPECT_EQ(enabled(form), cases[i].enabled) << "case " << i;
    }
}

TEST_F(EventFormTest, AStoredScheduleIsAKeyFirstThenAName) {
    schedule("{M}", "{N}");  // its name is the other's key
    schedule("{O}", "Twin");
    schedule("{P}", "Twin");
    for (const auto& [stored, key] :
         {std::pair("{N}", "{N}"), {"Nights", "{N}"}, {"{M}", "{M}"}, {"Twin", "{O}"}, {"", ""}, {"#323", ""}}) {
        EventRecord record = completeRecord(Response::kActivateRelay);
        record.scheduleKey = stored;
        EventForm form = newForm();
        EXPECT_EQ(messages(form, record).empty(), *key != '\0') << stored;
        form.fill(record);
        EXPECT_EQ(record.scheduleKey, key) << stored;
    }
}

TEST_F(EventFormTest, SchedulesThatWereEditedMeanwhileKeepTheChoice) {
    EventForm form = formWith(Response::kEmail);
    schedule("{N}", "Renamed");
    schedule("{Q}", "Another");
    form.refreshSchedules();
    EXPECT_EQ(form.schedules()[static_cast<std::size_t>(form.scheduleIndex())].name, "Renamed");
    EXPECT_EQ(form.schedules().size(), 4u);
    schedules_.clear();
    form.refreshSchedules();
    EXPECT_EQ(form.scheduleIndex(), 0);
}

TEST_F(EventFormTest, ATimeoutOfMinutesLosesItsSecondsAndOneThatIsNotUsedIsShownAndNotSaved) {
    constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
    const struct {
        std::uint32_t trigger, type, seconds;
        int list;
        std::int64_t value, unit;
        std::uint32_t saved;
    } cases[] = {{1, 1, 0, 2, 0, 0, 0},   {1, 1, 59, 2, 59, 0, 59},  {1, 1, 60, 2, 1, 1, 60},
                 {1, 1, 90, 2, 1, 1, 60}, {1, 1, 179, 2, 2, 2, 120}, {1, 1, 3600, 2, 60, 60, 3600},
                 {1, 0, 30, 1, 0, 0, 0},  {1, 2, 30, 0, 0, 0, 0},    {1, kUnknown, 30, 0, 0, 0, 0},
                 {2, 1, 30, 2, 30, 0, 0}, {2, 0, 0, 1, 0, 0, 0}};
    for (const auto& c : cases) {
        EventRecord record = completeRecord(Response::kActivateRelay);
        record.triggerType = c.trigger;
        record.timeoutType = c.type;
        record.timeoutSeconds = c.seconds;
        EventForm form = newForm();
        form.load(record);
        EXPECT_EQ(std::tuple(form.timeoutIndex(), form.timeoutValue(), form.timeoutUnit()),
                  std::tuple(c.list, c.value, c.unit));
        form.fill(record);
        EXPECT_EQ(std::pair(record.timeoutType, record.timeoutSeconds),
                  std::pair(c.list == 2 && c.trigger == 1 ? 1u : 0u, c.saved));
    }
}

TEST_F(EventFormTest, FillingLeavesNothingOfTheOldValues) {
    // The group, audio key and file name that are stored.
    const std::pair<Response, const char*> cases[] = {{Response::kActivateRelay, "Nurses,,"},
                                                      {Response::kServerAudio, "Nurses,other,"},
                                                      {Response::kTtsFile, "Nurses,,new"},
                                                      {Response::kTtsMessage, "Nurses,,"},
                                                      {Response::kEmail, ",,"}};
    for (const auto& [response, stored] : cases) {
        EventRecord record = completeRecord(Response::kServerAudio);
        record.triggerGroupKey = "old";
        record.timeOfDay = 5;
        record.timeoutSeconds = 9;
        record.responseDevice = {9};
        record.lastChecked = 11;
        record.lastTriggered = 12;
        record.badData = 1;
        EventForm form = formWith(Response::kActivateRelay);
        form.chooseDestination(3);
        chooseResponse(form, response);
        form.setMessageKey("other");
        form.setTtsFilename("new");
        form.setDisabled(true);
        form.fill(record);
        EXPECT_EQ(*record.responseGroupKey + "," + *record.messageKey + "," + *record.ttsFilename, stored);
        EXPECT_EQ(std::tie(record.key, *record.name, *record.scheduleKey, *record.fileGuid),
                  std::tuple("{E}", "New", "{N}", ""));
        EXPECT_EQ(std::tuple(record.triggerType, record.timeOfDay, record.timeoutType, record.timeoutSeconds),
                  std::tuple(2u, 0u, 0u, 0u));
        EXPECT_EQ(std::tie(record.triggerDevice, *record.triggerGroupKey, record.responseDevice),
                  std::tuple(kDoor, "", KSMac{}));
        EXPECT_EQ(
            std::tuple(record.responseType, record.disabled, record.lastChecked, record.lastTriggered, record.badData),
            std::tuple(static_cast<std::uint32_t>(response), 1u, 11u, 12u, 1u));
        form.chooseTrigger(8);
        form.fill(record);
        EXPECT_EQ(std::tie(record.triggerDevice, *record.triggerGroupKey), std::tuple(KSMac{}, "")) << "no source";
        form.chooseTrigger(7);
        form.chooseSource(3);
        form.fill(record);
        EXPECT_EQ(std::tie(record.triggerDevice, *record.triggerGroupKey), std::tuple(KSMac{}, "Nurses"));
    }
}

}  // namespace
}  // namespace orvc
