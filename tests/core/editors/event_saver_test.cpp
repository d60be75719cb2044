#include "editors/event_saver.h"

#include "editor_fixture.h"

namespace orvc {
namespace {

constexpr char kOld[] = "{00000001-0002-0003-0405-060708090A0B}";
constexpr char kNew[] = "{A0000000-0000-0000-0000-000000000000}";
constexpr char kNull[] = "{00000000-0000-0000-0000-000000000000}";

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
        form.setSpokenText("Hi");
        form.setEmail({"a", "b", "cc", "bc", "s", "body"});
        fillEvent(form, record, link_, log_.log, [] { return KSGuid{.data1 = 7}; });
        std::string calls = journal_.take();
        for (std::size_t xml; (xml = calls.find(" <?xml")) != std::string::npos;) {
            contents_ = calls.substr(xml, calls.find("</ORVSEventFile>", xml) - xml);
            calls.erase(xml, contents_.size() + std::string_view("</ORVSEventFile>\r\n").size());
        }
        return calls;
    }
    static std::string on(std::string_view call, std::string_view guid) { return std::string(call).append(guid); }

    std::string contents_;
};

TEST_F(EventSaverTest, TheOldFileGoesBeforeANewOneIsWritten) {
    const std::string deleted = on("KSFileDelete ", kOld) + on("; log: fillEvent: Deleted file GUID '", kOld) + "'";
    const std::string written = on("KSFileCreate; log: fileEvent: Created GUID ", kNew) + on("; KSFileWrite ", kNew);
    for (const Response response : {Response::kActivateRelay, Response::kServerAudio, Response::kTtsFile,
                                    Response::kTtsMessage, Response::kEmail}) {
        const bool hasFile = response == Response::kTtsMessage || response == Response::kEmail;
        for (const bool hadFile : {true, false}) {
            EventRecord record = completeRecord(response);
            if (!hadFile) record.fileGuid = std::nullopt;
            const std::string expected =
                (hadFile ? deleted : "") + (hadFile && hasFile ? "; " : "") + (hasFile ? written : "");
            EXPECT_EQ(save(record), expected) << static_cast<int>(response);
            EXPECT_EQ(record.fileGuid, hasFile ? kNew : "");
            EXPECT_EQ(record.key, "{E}");
        }
    }
    EXPECT_NE(contents_.find("<Email from=\"a\" to=\"b\" cc=\"\" bc=\"\" subject=\"s\" encoded=\"yes\">body</Email>"),
              std::string::npos)
        << contents_;
}

TEST_F(EventSaverTest, WhatTheServerRefusesIsLoggedAndStopsNothing) {
    const std::string deleted = on("KSFileDelete ", kOld) + on("; log: fillEvent: Deleted file GUID '", kOld) + "'; ";
    const struct {
        const char* refused;
        std::string calls;
        const char* stored;
    } cases[] = {
        {"KSFileDelete",
         on("KSFileDelete ", kOld) + on("; log: fillEvent: Failed to delete file GUID '", kOld) +
             on("'; KSFileCreate; log: fileEvent: Created GUID ", kNew) + on("; KSFileWrite ", kNew),
         kNew},
        {"KSFileCreate",
         deleted +
             "KSFileCreate; log: fileEvent: Failed to create a file; log: makeGUID: Invalid guid to convert ''; " +
             on("KSFileWrite ", kNull),
         ""},
        {"KSFileWrite",
         deleted + on("KSFileCreate; log: fileEvent: Created GUID ", kNew) + on("; KSFileWrite ", kNew) +
             on("; log: writeEventFileTts: Failed to write to GUID ", kNew),
         kNew},
    };
    for (const auto& c : cases) {
        link_.refused = c.refused;
        EventRecord record = completeRecord(Response::kTtsMessage);
        EXPECT_EQ(save(record), c.calls);
        EXPECT_EQ(record.fileGuid, c.stored) << c.refused;
        EXPECT_EQ(record.name, "Old");
    }
    // An old GUID that is none: the null file is asked to go.
    link_.refused.clear();
    EventRecord record = completeRecord(Response::kActivateRelay);
    record.fileGuid = "{1234}";
    EXPECT_EQ(save(record), on("log: makeGUID: Invalid guid to convert '{1234}'; KSFileDelete ", kNull) +
                                "; log: fillEvent: Deleted file GUID '{1234}'");
}

TEST_F(EventSaverTest, AnEventWithoutAKeyGetsANewOne) {
    EventRecord record = completeRecord(Response::kActivateRelay);
    record.key.clear();
    save(record);
    EXPECT_EQ(record.key, "{00000007-0000-0000-0000-000000000000}");
}

}  // namespace
}  // namespace orvc
