#include "editors/event_file.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace orvc {

bool operator==(const EventEmail& a, const EventEmail& b) {
    return std::tie(a.from, a.to, a.cc, a.bc, a.subject, a.body) ==
           std::tie(b.from, b.to, b.cc, b.bc, b.subject, b.body);
}

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

constexpr char kGuidText[] = "{01234567-89AB-CDEF-0123-456789abcdef}";

// A server that notes what is written.
class WriteRecorder final : public ServerLink {
  public:
    std::int32_t result = 0;
    std::vector<std::pair<KSGuid, std::string>> written;

    std::int32_t writeFile(const KSGuid& file, std::string_view bytes) override {
        written.emplace_back(file, bytes);
        return result;
    }

    bool isOpen() const override { return true; }
    StartResult start(const KSSocketAddress&, const std::string&, const std::string&) override { return {}; }
    std::int32_t stop() override { return unexpected(); }
    std::int32_t close() override { return unexpected(); }
    void unload() override { unexpected(); }
    std::int32_t createGroup(const KSGroupRecord&) override { return unexpected(); }
    std::int32_t deleteGroup(std::uint32_t) override { return unexpected(); }
    std::int32_t getGroupMembers(std::uint32_t) override { return unexpected(); }
    std::int32_t getMessages() override { return unexpected(); }
    std::int32_t resendSettings() override { return unexpected(); }
    std::int32_t createKey(const std::string&, bool) override { return unexpected(); }
    std::int32_t subscribe(const std::string&) override { return unexpected(); }
    std::int32_t setText(const std::string&, const std::string&) override { return unexpected(); }
    std::int32_t setDword(const std::string&, std::uint32_t) override { return unexpected(); }
    std::int32_t createFile(KSGuid&) override { return unexpected(); }
    std::int32_t readFile(const KSGuid&) override { return unexpected(); }
    std::int32_t deleteFile(const KSGuid&) override { return unexpected(); }

  private:
    std::int32_t unexpected() {
        ADD_FAILURE() << "only files are written here";
        return -1;
    }
};

// With no file open, lines go to the debugger.
class DebuggerLines final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    void writeToDebugger(const char* text) override { lines_.push_back(text); }

    // The messages since the last call, without time and counter.
    Lines take() {
        for (std::string& line : lines_) {
            line.erase(0, line.find(") ") + 2);
            line.pop_back();
        }
        return std::exchange(lines_, {});
    }

  private:
    Lines lines_;
};

class EventFile : public testing::Test {
  protected:
    DebuggerLines lines;
    SystemClock clock;
    TrackingLog log{lines, clock};
    WriteRecorder link;
};

const EventEmail kEmail = {"console@site.example",       "a@x.example, b@x.example",    "", "",
                           "Gate 5 & <door> 'open' 50%", "Line 1\r\nLine 2: a<b & 100%"};

TEST_F(EventFile, AreWrittenByteForByte) {
    writeEventFileTts(link, log, kGuidText, "a<b & 100%\r\n\xE9");
    writeEventFileEmail(link, log, kGuidText, kEmail);
    ASSERT_EQ(link.written.size(), 2u);
    EXPECT_EQ(link.written[0].second,
              "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n"
              "<ORVSEventFile>\r\n"
              "\t<TTS voice=\"default\" encoded=\"yes\">a&lt;b &amp; 100%%%0d%0a%ff</TTS>\r\n"
              "</ORVSEventFile>\r\n");
    EXPECT_EQ(link.written[1].second,
              "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n"
              "<ORVSEventFile>\r\n"
              "\t<Email from=\"console@site.example\" to=\"a@x.example, b@x.example\" cc=\"\" bc=\"\" "
              "subject=\"Gate 5 & <door> 'open' 50%\" encoded=\"yes\">"
              "Line 1%0d%0aLine 2: a&lt;b &amp; 100%%</Email>\r\n"
              "</ORVSEventFile>\r\n");
    for (const auto& [guid, bytes] : link.written) {
        EXPECT_EQ(guid.data1, 0x01234567u);
        EXPECT_EQ(guid.data4[7], 0xEF);
    }
    EXPECT_EQ(lines.take(), Lines());
}

TEST_F(EventFile, RefusedWritesAndBadGuidsAreLogged) {
    link.result = -7;
    writeEventFileTts(link, log, kGuidText, "x");
    writeEventFileEmail(link, log, kGuidText, {});
    EXPECT_EQ(lines.take(), (Lines{"writeEventFileTts: Failed to write to GUID "s + kGuidText,
                                   "writeEventFileEmail: Failed to write to GUID "s + kGuidText}));
    // The write is attempted all the same.
    writeEventFileTts(link, log, "{1234}", "x");
    writeEventFileEmail(link, log, "", {});
    EXPECT_EQ(lines.take(),
              (Lines{"makeGUID: Invalid guid to convert '{1234}'", "writeEventFileTts: Failed to write to GUID {1234}",
                     "makeGUID: Invalid guid to convert ''", "writeEventFileEmail: Failed to write to GUID "}));
    ASSERT_EQ(link.written.size(), 4u);
    EXPECT_EQ(link.written[2].first.data1, 0u);
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
    std::mt19937 random(11);
    for (int round = 0; round < 300; ++round) {
        std::string text(random() % 300, ' ');
        for (char& c : text)
            c = "%&<>;/! ab01\"'\r\n-[]"[random() % 20];
        ASSERT_EQ(getTtsMessage(formatTtsFile(text), log), text);
    }
    const std::string large(50'000'000, 'x');
    EXPECT_EQ(getTtsMessage(formatTtsFile(large), log), large);
    EXPECT_EQ(lines.take(), Lines());
}

TEST_F(EventFile, OnlyMarkedContentIsDecoded) {
    struct Case {
        const char *element, *text;
    };
    const Case cases[] = {
        {"<TTS voice=\"default\" encoded=\"yes\">%41&amp;</TTS>", "A&"},
        {"<TTS encoded='yes'>%41</TTS>", "A"},
        {"<TTS>%41&amp;</TTS>", "%41&amp;"},
        {"<TTS encoded=\"no\">%41</TTS>", "%41"},
        {"<TTS encoded=\"YES\">%41</TTS>", "%41"},
        {"<TTS encoded=\"yes\"> <b>bold</b>%0d\r\n</TTS>", " <b>bold</b>\r\r\n"},
        {"<TTS encoded=\"yes\"/>", ""},
        {"<Email/><TTS>1</TTS><TTS>2</TTS>", "1"},
        {"<tts>no</tts>", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(getTtsMessage("<ORVSEventFile>"s + c.element + "</ORVSEventFile>", log), c.text) << c.element;
    }
    const EventEmail email = processConfigurationFile(
        "<ORVSEventFile><TTS>no</TTS><Email to='&quot;T&quot;' cc='c'>%41</Email><Email from='f'/></ORVSEventFile>",
        log);
    EXPECT_EQ(email, (EventEmail{"", "&quot;T&quot;", "c", "", "", "%41"}));
    EXPECT_EQ(lines.take(), Lines());
}

TEST_F(EventFile, WhatIsNoPayloadReadsAsNothing) {
    const Lines failed = {"getTtsMessage: LoadXml failed"};
    const Lines noRoot = {"getTtsMessage: XML Root not found"};
    const Lines otherRoot = {"processConfigurationFile: Configuration not found"};
    EventEmail quoted = kEmail;
    quoted.subject = "The \"big\" gate";
    std::string deep = "<ORVSEventFile>";
    for (int i = 0; i < 100'000; ++i)
        deep += "<TTS>";
    struct Case {
        std::string bytes;
        Lines logged;
    };
    const Case cases[] = {
        {"", failed},
        {"no XML", failed},
        {formatEmailFile(quoted), failed},
        {deep, failed},
        {"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n", noRoot},
        {"<ORVSEventFile/>", {}},
        {"<orvsEventFile><Speech/></orvsEventFile>", otherRoot},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(getTtsMessage(c.bytes, log), "");
        EXPECT_EQ(lines.take(), c.logged) << c.bytes.substr(0, 100);
        EXPECT_EQ(processConfigurationFile(c.bytes, log), EventEmail());
        EXPECT_EQ(lines.take(), c.logged) << c.bytes.substr(0, 100);
    }
    // Another root is read all the same.
    EXPECT_EQ(getTtsMessage("<Other><TTS>x</TTS></Other>", log), "x");
    EXPECT_EQ(processConfigurationFile("<Other><Email>y</Email></Other>", log).body, "y");
    EXPECT_EQ(lines.take(), (Lines{otherRoot[0], otherRoot[0]}));
}

TEST_F(EventFile, CutAnywhereReadAsNothing) {
    const std::string whole = formatEmailFile(kEmail);
    for (std::size_t size = 0; size < whole.size() - 2; ++size) {
        // Of exactly this size, for the sanitizer.
        const std::vector<char> bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_EQ(processConfigurationFile({bytes.data(), size}, log), EventEmail()) << size;
        ASSERT_EQ(lines.take().size(), 1u) << size;
    }
    EXPECT_EQ(processConfigurationFile(whole.substr(0, whole.size() - 2), log), kEmail);
}

TEST_F(EventFile, NewGuidsAreWrittenInTheRegistryForm) {
    const KSGuid guid = {0x1234567, 0x89AB, 0xCDEF, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0x0F}};
    EXPECT_EQ(newGuidText([&] { return guid; }), "{01234567-89AB-CDEF-0123-456789ABCD0F}");
    EXPECT_EQ(newGuidText([] { return KSGuid(); }), "{00000000-0000-0000-0000-000000000000}");
}

}  // namespace
}  // namespace orvc
