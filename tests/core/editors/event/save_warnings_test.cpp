#include "editors/event/save_warnings.h"

#include "editor_fixture.h"
#include "editors/event/event_entry.h"

namespace orvc {
namespace {

class SaveWarningsTest : public EditorTest {
  protected:
    SaveWarningsTest() { setUpInstallation(); }
    EventForm formOf(const EventRecord& record) const {
        EventForm form = newForm();
        form.load(record);
        return form;
    }
    // What saving an Event tells when the operator does only this.
    SaveWarnings warnings(const EventRecord& record, const std::function<void(EventForm&)>& change = nullptr) const {
        EventForm form = formOf(record);
        if (change) change(form);
        return warningsFor(form, record);
    }
    // An Event that stores nothing that its editor does not show.
    static EventRecord plainRecord(Response response) {
        EventRecord record = completeRecord(response);
        if (response != Response::kServerAudio) record.messageKey = "";
        if (response != Response::kTtsFile) record.ttsFilename = "";
        if (response != Response::kTtsMessage && response != Response::kEmail) record.fileGuid = "";
        return record;
    }
};

TEST_F(SaveWarningsTest, ADelayThatTheListsCannotShowIsTold) {
    const auto cut = [](const char* stored, const char* saved) {
        return SaveWarnings{{IDS_SAVE_DELAY_CUT, {stored, saved}}};
    };
    const SaveWarnings dropped{{IDS_SAVE_DELAY_DROPPED, {"45"}}};
    const struct {
        Trigger trigger;
        std::uint32_t type, seconds;
        std::function<void(EventForm&)> change;
        SaveWarnings told;
    } cases[] = {
        {Trigger::kButtonActivation, 1, 59, nullptr, {}},
        {Trigger::kButtonActivation, 1, 60, nullptr, {}},
        {Trigger::kButtonActivation, 1, 90, nullptr, cut("90", "60")},
        {Trigger::kButtonActivation, 1, 150, nullptr, cut("150", "120")},
        {Trigger::kButtonActivation, 1, 7300, nullptr, cut("7300", "7260")},
        {Trigger::kButtonActivation, 1, 90, [](EventForm& form) { form.setName("other"); }, cut("90", "60")},
        // What the operator chose.
        {Trigger::kButtonActivation, 1, 90, [](EventForm& form) { form.chooseTimeoutValue(2); }, {}},
        {Trigger::kButtonActivation, 1, 150, [](EventForm& form) { form.chooseTimeoutUnit(1); }, {}},
        {Trigger::kButtonActivation, 1, 45, [](EventForm& form) { form.chooseTimeout(1); }, {}},
        {Trigger::kButtonDeactivation, 1, 45, [](EventForm& form) { form.chooseTrigger(1); }, {}},
        // Stored, and not used.
        {Trigger::kButtonActivation, 0, 45, nullptr, dropped},
        {Trigger::kButtonDeactivation, 1, 45, nullptr, dropped},
    };
    for (const auto& c : cases) {
        EventRecord record = plainRecord(Response::kActivateRelay);
        record.triggerType = static_cast<std::uint32_t>(c.trigger);
        record.timeoutType = c.type;
        record.timeoutSeconds = c.seconds;
        EXPECT_EQ(warnings(record, c.change), c.told) << c.type << " " << c.seconds;
    }
}

TEST_F(SaveWarningsTest, WhatTheEditorNeverShowedAndDropsIsTold) {
    const auto ids = [](const SaveWarnings& told) {
        std::vector<unsigned> texts;
        for (const SaveWarning& warning : told)
            texts.push_back(warning.text);
        return texts;
    };
    using Ids = std::vector<unsigned>;
    const std::pair<Response, Ids> cases[] = {
        {Response::kActivateRelay, {IDS_SAVE_AUDIO_DROPPED, IDS_SAVE_TTS_FILE_DROPPED, IDS_SAVE_PAYLOAD_DROPPED}},
        {Response::kServerAudio, {IDS_SAVE_TTS_FILE_DROPPED, IDS_SAVE_PAYLOAD_DROPPED}},
        {Response::kTtsFile, {IDS_SAVE_AUDIO_DROPPED, IDS_SAVE_PAYLOAD_DROPPED}},
        {Response::kTtsMessage, {IDS_SAVE_AUDIO_DROPPED, IDS_SAVE_TTS_FILE_DROPPED}}};
    for (const auto& [response, told] : cases) {
        EXPECT_EQ(ids(warnings(completeRecord(response))), told) << static_cast<int>(response);
        EXPECT_EQ(ids(warnings(plainRecord(response))), Ids()) << static_cast<int>(response);
    }
    // Another response was asked for.
    const auto chooseRelay = [](EventForm& form) { form.chooseResponse(1); };
    for (const Response response : {Response::kServerAudio, Response::kTtsFile, Response::kTtsMessage})
        EXPECT_EQ(ids(warnings(plainRecord(response), chooseRelay)), Ids());
    // An audio message at a trigger that does not offer it was never shown.
    EventRecord atServer = plainRecord(Response::kServerAudio);
    atServer.triggerType = static_cast<std::uint32_t>(Trigger::kServerConnection);
    EXPECT_EQ(ids(warnings(atServer)), Ids{IDS_SAVE_AUDIO_DROPPED});
    EXPECT_EQ(warningsFor(newForm(), std::nullopt), SaveWarnings());
}

TEST_F(SaveWarningsTest, CopiesAndCharactersThatAFileLosesAreToldOfTheChosenResponse) {
    EventForm form = formOf(plainRecord(Response::kEmail));
    EventEmail email{"a\xE9",
                     "t",
                     "",
                     "",
                     "s\xFC",
                     "gr\xFC\xDF"
                     "en, \xFC"};
    form.setEmail(email);
    form.setSpokenText("\xC4");
    EXPECT_EQ(warningsFor(form, std::nullopt), (SaveWarnings{{IDS_SAVE_CHARACTERS, {"\xFC \xDF"}}}));
    for (const auto copies : {&EventEmail::cc, &EventEmail::bc}) {
        EventEmail copied{"f", "t", "", "", "s", "b"};
        copied.*copies = "c";
        form.setEmail(copied);
        EXPECT_EQ(warningsFor(form, std::nullopt), (SaveWarnings{{IDS_SAVE_COPIES_DROPPED, {}}}));
    }
    strings_.texts[IDS_SAVE_DELAY_CUT] = "%s becomes %s.";
    strings_.texts[IDS_SAVE_CHARACTERS] = "Lost: %s";
    EXPECT_EQ(textOf({{IDS_SAVE_DELAY_CUT, {"90", "60"}}, {IDS_SAVE_CHARACTERS, {"\xFC"}}}, strings_),
              "90 becomes 60. Lost: \xFC");
    std::string many;
    for (int c = 0x80; c < 0x100; ++c)
        many += static_cast<char>(c);
    EXPECT_EQ(lostCharacters(many).size(), 20u * 2 + 3);
    EXPECT_EQ(lostCharacters(" ~\t\x7F"), "");
}

// The file tells the truth about what is told.
TEST_F(SaveWarningsTest, AnEmailIsRefusedExactlyWhenItsFileCouldNotBeRead) {
    for (const auto field : {&EventEmail::from, &EventEmail::to, &EventEmail::subject, &EventEmail::body}) {
        for (int c = 1; c < 0x100; ++c) {
            EventEmail email{"from", "to", "", "", "subject", "body"};
            (email.*field) += static_cast<char>(c);
            const bool isText = c >= ' ' || field == &EventEmail::body;  // a box of one line takes no others
            if (!isText) continue;
            const EventEmail read = processConfigurationFile(formatEmailFile(email), log_.log);
            const bool isKept = read == email;
            EXPECT_EQ(isKept, warningsForEmail(email).empty()) << c;
            EXPECT_EQ(spoilsPayloadFile(email), !isKept && field != &EventEmail::body) << c;
        }
    }
}

}  // namespace
}  // namespace orvc
