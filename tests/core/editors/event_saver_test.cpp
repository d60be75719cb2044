#include "editors/event_saver.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

constexpr std::string_view kDeleteOld = "KSFileDelete {00000001-0002-0003-0405-060708090A0B}";
constexpr std::string_view kDeleted = "log: fillEvent: Deleted file GUID '{00000001-0002-0003-0405-060708090A0B}'";
constexpr char kNew[] = "{A0000000-0000-0000-0000-000000000000}";
constexpr char kWriteNull[] = "KSFileWrite {00000000-0000-0000-0000-000000000000}";

class EventSaverTest : public EditorTest {
  protected:
    EventSaverTest() {
        setUpInstallation();
        link_.newFile.data1 = 0xA0000000;
    }
    // What saving does, without the contents of the file.
    std::string save(EventRecord& record) {
        EventForm form = newForm();
        form.load(record);
        form.setSpokenText("Hi & <go>\r\n");
        form.setEmail({"a", "b", "cc", "bc", "s & <s> 5%", "100%"});
        fillEvent(form, record, link_, log_.log, [] { return KSGuid{.data1 = 7}; });
        std::string calls = journal_.take();
        if (const std::size_t xml = calls.find(" <?xml"); xml != std::string::npos) {
            const std::size_t end = calls.rfind("</ORVSEventFile>\r\n") + 18;
            contents_ = calls.substr(xml, end - xml);
            calls.erase(xml, end - xml);
        }
        return calls;
    }
    static std::string inOrder(std::initializer_list<std::string_view> calls) {
        std::string all;
        for (const std::string_view call : calls)
            all.append(all.empty() || call.empty() ? "" : "; ").append(call);
        return all;
    }

    const std::string created_ = std::string("KSFileCreate; log: fileEvent: Created GUID ").append(kNew);
    const std::string written_ = std::string("KSFileWrite ").append(kNew);
    std::string contents_;
};

TEST_F(EventSaverTest, TheOldFileGoesBeforeANewOneIsWritten) {
    const std::pair<Response, const char*> cases[] = {
        {Response::kActivateRelay, nullptr},
        {Response::kServerAudio, nullptr},
        {Response::kTtsFile, nullptr},
        {Response::kTtsMessage, "<TTS voice=\"default\" encoded=\"yes\">Hi &amp; &lt;go&gt;%0d%0a</TTS>"},
        {Response::kEmail,
         "<Email from=\"a\" to=\"b\" cc=\"\" bc=\"\" subject=\"s & <s> 5%\" encoded=\"yes\">100%%</Email>"}};
    for (const auto& [response, element] : cases) {
        for (const bool hadFile : {true, false}) {
            EventRecord record = completeRecord(response);
            if (!hadFile) record.fileGuid = std::nullopt;
            const std::string written = element != nullptr ? inOrder({created_, written_}) : "";
            EXPECT_EQ(save(record), hadFile ? inOrder({kDeleteOld, kDeleted, written}) : written);
            EXPECT_EQ(record.fileGuid, element != nullptr ? kNew : "");
            EXPECT_EQ(record.key, "{E}");
            if (element == nullptr) continue;
            EXPECT_EQ(contents_, std::string(" <?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<ORVSEventFile>\r\n\t")
                                     .append(element)
                                     .append("\r\n</ORVSEventFile>\r\n"));
        }
    }
}

TEST_F(EventSaverTest, WhatTheServerRefusesIsLoggedAndStopsNothing) {
    const std::string toNew = std::string(": Failed to write to GUID ").append(kNew);
    const struct {
        Response response;
        const char* refused;
        std::string calls;
        const char* stored;
    } cases[] = {
        {Response::kTtsMessage, "KSFileDelete",
         inOrder({kDeleteOld, "log: fillEvent: Failed to delete file GUID '{00000001-0002-0003-0405-060708090A0B}'",
                  created_, written_}),
         kNew},
        {Response::kTtsMessage, "KSFileCreate",
         inOrder({kDeleteOld, kDeleted, "KSFileCreate", "log: fileEvent: Failed to create a file",
                  "log: makeGUID: Invalid guid to convert ''", kWriteNull}),
         ""},
        {Response::kTtsMessage, "KSFileWrite",
         inOrder({kDeleteOld, kDeleted, created_, written_, "log: writeEventFileTts" + toNew}), kNew},
        {Response::kEmail, "KSFileWrite",
         inOrder({kDeleteOld, kDeleted, created_, written_, "log: writeEventFileEmail" + toNew}), kNew},
    };
    for (const auto& c : cases) {
        link_.refused = c.refused;
        EventRecord record = completeRecord(c.response);
        EXPECT_EQ(save(record), c.calls);
        EXPECT_EQ(record.fileGuid, c.stored) << c.refused;
        EXPECT_EQ(record.name, "Old");
    }
}

TEST_F(EventSaverTest, AnEventWithoutAKeyGetsANewOne) {
    EventRecord record = completeRecord(Response::kActivateRelay);
    record.key.clear();
    save(record);
    EXPECT_EQ(record.key, "{00000007-0000-0000-0000-000000000000}");
}

}  // namespace
}  // namespace orvc
