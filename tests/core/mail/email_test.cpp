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
    email.from = "console@site.example";
    email.addTo("guard@site.example", "guard@site.example");
    return email;
}

std::string format(const Email& email) {
    return formatEmail(email, {1'795'262'700, "abc"});
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
    email.addTo("Night \"B\" \\ shift", "night@site.example");
    EXPECT_THAT(linesOf(format(email)),
                ElementsAre("Date: Sat, 21 Nov 2026 12:05:00 +0000", "From: <console@site.example>",
                            "To: \"guard@site.example\"", " <guard@site.example>,", " \"Night \\\"B\\\" \\\\ shift\"",
                            " <night@site.example>", "Subject: Door 3", "Message-ID: <1795262700.abc@site.example>",
                            "MIME-Version: 1.0", "Content-Type: text/plain; charset=us-ascii",
                            "Content-Transfer-Encoding: 7bit", "", "One", ".two", "", "three"));
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

// The fuzzer sees to it that every body comes back, in lines that mail can carry.
TEST(EmailMessage, BodiesThatMailCannotCarryAreQuoted) {
    const std::string longLine(75, 'a');
    const std::pair<std::string, std::string> cases[] = {
        {"Gr\xC3\xBC\xC3\x9F e = 1 \nend", "Gr=C3=BC=C3=9F e =3D 1=20\r\nend\r\n"},
        {std::string("nul\0", 4), "nul=00\r\n"},
        {longLine + "\xC3\xBC", longLine + "=\r\n=C3=BC\r\n"},
    };
    for (const auto& [body, expected] : cases) {
        const std::string message = format(makeEmail("s", body));
        EXPECT_THAT(message, HasSubstr("Content-Transfer-Encoding: quoted-printable"));
        EXPECT_TRUE(message.ends_with("\r\n\r\n" + expected)) << message;
    }
}

// The fuzzer sees to it that no control character passes.
TEST(EmailMessage, WhatWouldChangeTheHeaderIsRefused) {
    EXPECT_EQ(findFault(makeEmail("s", "b\r\n.\r\n")), std::nullopt);
    EXPECT_EQ(findFault(makeEmail("a\nBcc: x@y", "b")), EmailFault::kSubject);
    Email email = makeEmail("s", "b");
    email.to.clear();
    EXPECT_EQ(findFault(email), EmailFault::kRecipient);
    email.addTo("a\nb", "a@x");
    EXPECT_EQ(findFault(email), EmailFault::kRecipient);
    for (const char* bad : {"", "a@x\r\nDATA", "a@x>", "<a@x", "a b@x", "a\xC3\xBC@x"}) {
        email.to.clear();
        email.addTo("name", bad);
        EXPECT_EQ(findFault(email), EmailFault::kRecipient) << bad;
        email.from = bad;
        EXPECT_EQ(findFault(email), EmailFault::kSender) << bad;
        email.from = "a@x";
    }
}

}  // namespace
}  // namespace orvc
