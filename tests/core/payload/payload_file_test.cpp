#include "payload/payload_file.h"

#include <gtest/gtest.h>

#include <utility>

#include "fake_log_system.h"

namespace orvc {
namespace {

// The fields of an e-mail, in the order of the file.
std::string fieldsOf(const EventEmail& email) {
    std::string fields = email.from;
    for (const std::string& field : {email.to, email.cc, email.bc, email.subject, email.body})
        fields.append("|").append(field);
    return fields;
}

class EventFile : public testing::Test {
  protected:
    Journal journal;
    JournalLog logged{journal};
    TrackingLog& log = logged.log;
};

TEST_F(EventFile, OnlyMarkedContentIsDecoded) {
    const std::pair<std::string, const char*> cases[] = {
        {"<TTS voice=\"default\" encoded=\"yes\">%41&amp;</TTS>", "A&"},
        {"<TTS encoded='yes'>%41</TTS>", "A"},
        {"<TTS>%41&amp;</TTS>", "%41&amp;"},
        {"<TTS encoded=\"yes\"> <b>bold</b>%0d\r\n</TTS>", " <b>bold</b>\r\r\n"},
        {"<Email/><TTS>1</TTS><TTS>2</TTS>", "1"},
    };
    for (const auto& [element, text] : cases)
        EXPECT_EQ(getTtsMessage("<ORVSEventFile>" + element + "</ORVSEventFile>", log), text) << element;
    const EventEmail email = processConfigurationFile(
        "<ORVSEventFile><TTS>no</TTS><Email to='&quot;T&quot;' cc='c'>%41</Email><Email from='f'/></ORVSEventFile>",
        log);
    EXPECT_EQ(fieldsOf(email), "|&quot;T&quot;|c|||%41");
    EXPECT_EQ(journal.take(), "");
}

TEST_F(EventFile, WhatIsNoPayloadReadsAsNothing) {
    const std::string failed = "log: getTtsMessage: LoadXml failed";
    const std::string otherRoot = "log: processConfigurationFile: Configuration not found";
    const std::string whole = formatEmailFile({"f", "t", "", "", "s", "b"});
    const std::pair<std::string, std::string> cases[] = {
        {"no XML", failed},
        {formatEmailFile({"f", "t", "", "", "The \"big\" gate", "b"}), failed},
        {whole.substr(0, whole.size() - 3), failed},
        {"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n", "log: getTtsMessage: XML Root not found"},
        {"<ORVSEventFile/>", ""},
        {"<orvsEventFile><Speech/></orvsEventFile>", otherRoot},
    };
    for (const auto& [bytes, line] : cases) {
        EXPECT_EQ(getTtsMessage(bytes, log), "");
        EXPECT_EQ(journal.take(), line) << bytes;
        EXPECT_EQ(fieldsOf(processConfigurationFile(bytes, log)), "|||||");
        EXPECT_EQ(journal.take(), line) << bytes;
    }
    EXPECT_EQ(getTtsMessage("<Other><TTS>x</TTS></Other>", log), "x") << "another root is read all the same";
    EXPECT_EQ(journal.take(), otherRoot);
}

}  // namespace
}  // namespace orvc
