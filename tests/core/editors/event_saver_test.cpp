#include "editors/event_saver.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

constexpr char kNew[] = "{A0000000-0000-0000-0000-000000000000}";
constexpr char kDeleted[] =
    "KSFileDelete {00000001-0002-0003-0405-060708090A0B}; "
    "log: fillEvent: Deleted file GUID '{00000001-0002-0003-0405-060708090A0B}'";
constexpr char kWritten[] =
    "KSFileCreate; log: fileEvent: Created GUID {A0000000-0000-0000-0000-000000000000}; "
    "KSFileWrite {A0000000-0000-0000-0000-000000000000}";

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
            const std::string separator = hadFile && element != nullptr ? "; " : "";
            EXPECT_EQ(save(record), (hadFile ? kDeleted : "") + separator + (element != nullptr ? kWritten : ""));
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
    const struct {
        Response response;
        const char *refused, *log, *stored;
    } cases[] = {
        {Response::kTtsMessage, "KSFileDelete", "fillEvent: Failed to delete file GUID '{00000001-", kNew},
        {Response::kTtsMessage, "KSFileCreate",
         "fileEvent: Failed to create a file; log: makeGUID: Invalid guid to convert ''; KSFileWrite {00000000-", ""},
        {Response::kTtsMessage, "KSFileWrite", "writeEventFileTts: Failed to write to GUID {A0000000-", kNew},
        {Response::kEmail, "KSFileWrite", "writeEventFileEmail: Failed to write to GUID {A0000000-", kNew},
    };
    for (const auto& c : cases) {
        link_.refused = c.refused;
        EventRecord record = completeRecord(c.response);
        const std::string calls = save(record);
        EXPECT_NE(calls.find(std::string("; log: ") + c.log), std::string::npos) << calls;
        EXPECT_NE(calls.find("KSFileWrite {"), std::string::npos) << calls;
        EXPECT_EQ(record.fileGuid, c.stored) << c.refused;
        EXPECT_EQ(record.name, "Old");
    }
}

}  // namespace
}  // namespace orvc
