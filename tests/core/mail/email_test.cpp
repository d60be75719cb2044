#include "mail/email.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace orvc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Email makeEmail(const std::string& subject, const std::string& body) {
    Email email;
    email.subject = subject;
    email.body = body;
    email.from = parseMailbox("console@site.example");
    email.to = parseRecipients("guard@site.example");
    return email;
}

std::string format(const Email& email, std::int64_t seconds = 1'795'262'700) {
    return formatEmail(email, {seconds, "abc"});
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        EXPECT_TRUE(line.ends_with('\r')) << line;
        line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

TEST(EmailMessage, APlainMessageStandsAsItWasTyped) {
    Email email = makeEmail("Door 3", "One\n.two\r\n\rthree");
    email.to.push_back({"Night \"B\" \\ shift", "night@site.example"});
    EXPECT_THAT(linesOf(format(email)),
                ElementsAre("Date: Sat, 21 Nov 2026 12:05:00 +0000", "From: <console@site.example>",
                            "To: \"guard@site.example\"", " <guard@site.example>,", " \"Night \\\"B\\\" \\\\ shift\"",
                            " <night@site.example>", "Subject: Door 3", "Message-ID: <1795262700.abc@site.example>",
                            "MIME-Version: 1.0", "Content-Type: text/plain; charset=us-ascii",
                            "Content-Transfer-Encoding: 7bit", "", "One", ".two", "", "three"));
}

TEST(EmailMessage, DatesFollowTheCalendar) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {0, "Thu, 01 Jan 1970 00:00:00"},
        {951'782'400, "Tue, 29 Feb 2000 00:00:00"},
        {1'772'323'199, "Sat, 28 Feb 2026 23:59:59"},
        {1'772'323'200, "Sun, 01 Mar 2026 00:00:00"},
        {4'107'542'400, "Mon, 01 Mar 2100 00:00:00"},
    };
    for (const auto& [seconds, expected] : cases)
        EXPECT_THAT(format(makeEmail("s", "b"), seconds), HasSubstr(std::string("Date: ") + expected + " +0000\r\n"));
}

// What is expected: name, address; one pair for each recipient.
TEST(EmailMessage, AddressesCanHaveNames) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {" a@x , ,;\tb@x; ", {"a@x", "a@x", "b@x", "b@x"}},
        {"Night porter <a@x>;b@x", {"Night porter", "a@x", "b@x", "b@x"}},
        {R"("3\" door, west" < a@x >, <b@x>)", {"3\" door, west", "a@x", "b@x", "b@x"}},
        {"A <a,b@x>, c@x", {"A", "a,b@x", "c@x", "c@x"}},
        {R"("a,b"@x, c@x)", {R"("a,b"@x)", R"("a,b"@x)", "c@x", "c@x"}},
        {"T\xC3\xBCr <a@x>", {"T\xC3\xBCr", "a@x"}},
        {"<>", {"", ""}},
        {"a@x b@x <c@x", {"a@x b@x <c@x", "a@x b@x <c@x"}},
        {R"("a <b@x>, c@x\)", {R"("a <b@x>, c@x\)", R"("a <b@x>, c@x\)"}},
        {"a <b@x> c, d@x", {"a <b@x> c", "a <b@x> c", "d@x", "d@x"}},
    };
    for (const auto& [text, expected] : cases) {
        std::vector<std::string> found;
        for (const Mailbox& mailbox : parseRecipients(text))
            found.insert(found.end(), {mailbox.name, mailbox.address});
        EXPECT_EQ(found, expected) << text;
    }
    Email email = makeEmail("s", "b");
    email.from = parseMailbox("\"Door 3, west\" <a@x>");
    email.to = {{"T\xC3\xBCr", "b@x"}, {std::string(300, 'n'), "c@x"}};
    const std::string message = format(email);
    EXPECT_THAT(message, HasSubstr("From: \"Door 3, west\"\r\n <a@x>\r\nTo: =?UTF-8?B?VMO8cg==?=\r\n <b@x>,\r\n =?"));
    for (const std::string& line : linesOf(message))
        EXPECT_LE(line.size(), 76u) << line;
}

TEST(EmailMessage, SubjectsOfOtherLettersBecomeWordsThatFitTheirLines) {
    EXPECT_THAT(format(makeEmail("T\xC3\xBCr", "b")), HasSubstr("\r\nSubject: =?UTF-8?B?VMO8cg==?=\r\n"));
    // What looks encoded would be shown decoded.
    EXPECT_THAT(format(makeEmail("=?UTF-8?B?QQ==?=", "b")), HasSubstr("Subject: =?UTF-8?B?PT9VVEYtOD9CP1FRPT0/PQ==?="));
    std::string umlauts = "x";
    for (int i = 0; i < 60; ++i)
        umlauts += "\xC3\xBC";
    for (const std::string& subject : {umlauts, std::string(300, 'a')}) {
        std::size_t words = 0;
        for (const std::string& line : linesOf(format(makeEmail(subject, "b")))) {
            if (line.find("=?UTF-8?B?") == std::string::npos) continue;
            ++words;
            EXPECT_LE(line.size(), 76u);
            // "w7w=" and "vM" at a word's edge would be half of a letter.
            EXPECT_EQ(line.find("?B?v"), std::string::npos);
        }
        EXPECT_GE(words, 4u);
    }
}

// The fuzzer checks that every line of a message is one that mail can carry.
TEST(EmailMessage, BodiesThatMailCannotCarryAreQuoted) {
    struct Case {
        std::string body;
        std::string charset;
        std::string expected;
    };
    const std::string longest(75, 'a');
    const Case cases[] = {
        {"Gr\xC3\xBC\xC3\x9F e = 1 \nend", "utf-8", "Gr=C3=BC=C3=9F e =3D 1=20\r\nend\r\n"},
        {std::string("nul\0", 4), "us-ascii", "nul=00\r\n"},
        {longest + "aaaaa\xC3\xBC", "utf-8", longest + "=\r\naaaaa=C3=BC\r\n"},
    };
    for (const auto& [body, charset, expected] : cases) {
        const std::string message = format(makeEmail("s", body));
        EXPECT_THAT(message, HasSubstr("charset=" + charset + "\r\nContent-Transfer-Encoding: quoted-printable\r\n"));
        EXPECT_TRUE(message.ends_with("\r\n\r\n" + expected)) << message;
    }
}

// The fuzzer checks that no control character reaches the header.
TEST(EmailMessage, WhatWouldChangeTheHeaderIsRefused) {
    EXPECT_EQ(findFault(makeEmail("s", "b\r\n.\r\n")), std::nullopt);
    EXPECT_EQ(findFault(makeEmail("a\nBcc: x@y", "b")), EmailFault::kSubject);
    Email email = makeEmail("s", "b");
    email.to.clear();
    EXPECT_EQ(findFault(email), EmailFault::kRecipient);
    for (const char* bad :
         {"", "a@x\r\nDATA", "a@x>", "<a@x", "a b@x", "a\xC3\xBC@x", "a\nb <a@x>", "a <b@x\n>", "<>"}) {
        email.to = {parseMailbox(bad)};
        EXPECT_EQ(findFault(email), EmailFault::kRecipient) << bad;
        email.from = parseMailbox(bad);
        EXPECT_EQ(findFault(email), EmailFault::kSender) << bad;
        email.from = parseMailbox("a@x");
    }
}

}  // namespace
}  // namespace orvc
