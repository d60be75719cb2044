#include "editors/event_file.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>
#include <vector>

#include "fake_log_system.h"
#include "fake_server_link.h"

namespace orvc {

bool operator==(const EventEmail& a, const EventEmail& b) {
    return std::tie(a.from, a.to, a.cc, a.bc, a.subject, a.body) ==
           std::tie(b.from, b.to, b.cc, b.bc, b.subject, b.body);
}

namespace {

using namespace std::string_literals;

constexpr char kGuidText[] = "{01234567-89AB-CDEF-0123-456789abcdef}";

class EventFile : public testing::Test {
  protected:
    Journal journal;
    JournalLog logged{journal};
    TrackingLog& log = logged.log;
};

const EventEmail kEmail = {"console@site.example",       "a@x.example, b@x.example",    "", "",
                           "Gate 5 & <door> 'open' 50%", "Line 1\r\nLine 2: a<b & 100%"};

TEST_F(EventFile, AreWrittenByteForByte) {
    FakeServerLink link(journal);
    const std::string opening =
        "KSFileWrite {01234567-89AB-CDEF-0123-456789ABCDEF} "
        "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n"
        "<ORVSEventFile>\r\n";
    writeEventFileTts(link, log, kGuidText, "a<b & 100%\r\n\xE9");
    EXPECT_EQ(journal.take(), opening +
                                  "\t<TTS voice=\"default\" encoded=\"yes\">a&lt;b &amp; 100%%%0d%0a%ff</TTS>\r\n"
                                  "</ORVSEventFile>\r\n");
    writeEventFileEmail(link, log, kGuidText, kEmail);
    EXPECT_EQ(journal.take(),
              opening +
                  "\t<Email from=\"console@site.example\" to=\"a@x.example, b@x.example\" cc=\"\" bc=\"\" "
                  "subject=\"Gate 5 & <door> 'open' 50%\" encoded=\"yes\">"
                  "Line 1%0d%0aLine 2: a&lt;b &amp; 100%%</Email>\r\n"
                  "</ORVSEventFile>\r\n");
}

TEST_F(EventFile, RefusedWritesAndBadGuidsAreLogged) {
    KSServerLink closed;
    writeEventFileTts(closed, log, kGuidText, "x");
    writeEventFileEmail(closed, log, "{1234}", {});
    EXPECT_EQ(journal.take(), "log: writeEventFileTts: Failed to write to GUID "s + kGuidText +
                                  "; log: makeGUID: Invalid guid to convert '{1234}'; log: writeEventFileEmail: "
                                  "Failed to write to GUID {1234}");
}

TEST_F(EventFile, ReadBackAsTheyWereWritten) {
    EXPECT_EQ(processConfigurationFile(formatEmailFile(kEmail), log), kEmail);
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    const std::string expected = everyByte.substr(0, 0x80) + std::string(0x80, '\xFF');
    EXPECT_EQ(getTtsMessage(formatTtsFile(everyByte), log), expected);
    // An address field keeps its bytes, all but the double quote and zero.
    EventEmail email;
    email.subject = everyByte.substr(1);
    std::erase(email.subject, '"');
    EXPECT_EQ(processConfigurationFile(formatEmailFile(email), log), email);
    const std::string large(50'000'000, 'x');
    EXPECT_EQ(getTtsMessage(formatTtsFile(large), log), large);
    EXPECT_EQ(journal.take(), "");
}

TEST_F(EventFile, OnlyMarkedContentIsDecoded) {
    struct Case {
        const char *element, *text;
    };
    const Case cases[] = {
        {"<TTS voice=\"default\" encoded=\"yes\">%41&amp;</TTS>", "A&"},
        {"<TTS encoded='yes'>%41</TTS>", "A"},
        {"<TTS>%41&amp;</TTS>", "%41&amp;"},
        {"<TTS encoded=\"yes\"> <b>bold</b>%0d\r\n</TTS>", " <b>bold</b>\r\r\n"},
        {"<Email/><TTS>1</TTS><TTS>2</TTS>", "1"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(getTtsMessage("<ORVSEventFile>"s + c.element + "</ORVSEventFile>", log), c.text) << c.element;
    }
    const EventEmail email = processConfigurationFile(
        "<ORVSEventFile><TTS>no</TTS><Email to='&quot;T&quot;' cc='c'>%41</Email><Email from='f'/></ORVSEventFile>",
        log);
    EXPECT_EQ(email, (EventEmail{"", "&quot;T&quot;", "c", "", "", "%41"}));
    EXPECT_EQ(journal.take(), "");
}

TEST_F(EventFile, WhatIsNoPayloadReadsAsNothing) {
    const std::string failed = "log: getTtsMessage: LoadXml failed";
    const std::string otherRoot = "log: processConfigurationFile: Configuration not found";
    EventEmail quoted = kEmail;
    quoted.subject = "The \"big\" gate";
    std::string deep = "<ORVSEventFile>";
    for (int i = 0; i < 100'000; ++i)
        deep += "<TTS>";
    const std::pair<std::string, std::string> cases[] = {
        {"no XML", failed},
        {formatEmailFile(quoted), failed},
        {deep, failed},
        {"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n", "log: getTtsMessage: XML Root not found"},
        {"<ORVSEventFile/>", ""},
        {"<orvsEventFile><Speech/></orvsEventFile>", otherRoot},
    };
    for (const auto& [bytes, line] : cases) {
        EXPECT_EQ(getTtsMessage(bytes, log), "");
        EXPECT_EQ(journal.take(), line) << bytes.substr(0, 100);
        EXPECT_EQ(processConfigurationFile(bytes, log), EventEmail());
        EXPECT_EQ(journal.take(), line) << bytes.substr(0, 100);
    }
    EXPECT_EQ(getTtsMessage("<Other><TTS>x</TTS></Other>", log), "x") << "another root is read all the same";
    EXPECT_EQ(journal.take(), otherRoot);
}

TEST_F(EventFile, CutAnywhereReadAsNothing) {
    const std::string whole = formatEmailFile(kEmail);
    for (std::size_t size = 0; size < whole.size() - 2; ++size) {
        // Of exactly this size, for the sanitizer.
        const std::vector<char> bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_EQ(processConfigurationFile({bytes.data(), size}, log), EventEmail()) << size;
        ASSERT_EQ(journal.take().rfind("log: "), 0u) << size;
    }
    EXPECT_EQ(processConfigurationFile(whole.substr(0, whole.size() - 2), log), kEmail);
}

}  // namespace
}  // namespace orvc
