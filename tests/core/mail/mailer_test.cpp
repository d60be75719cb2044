// The mailer against a server that answers on loopback.
#include "mail/mailer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <sstream>
#include <tuple>

#include "mail/mail_task.h"
#include "mail_server/smtp_server.h"
#include "mail_server/tls_server.h"

namespace orvc {
namespace {

using namespace std::chrono_literals;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kPassword = "pa55-word";
constexpr const char* kEncodedLogon = "AG9wZXJhdG9yAHBhNTUtd29yZA==";  // PLAIN, of operator and the password
constexpr const char* kEncodedPassword = "cGE1NS13b3Jk";

Email makeEmail() {
    Email email;
    email.subject = "Test";
    email.body = "Hello\n.\n..dots\n";
    email.from = parseMailbox("Console <console@site.example>");
    email.to = parseRecipients("a@site.example, Guard <b@site.example>");
    return email;
}

// Whatever happens in a test: every line names the routine, and neither the report nor the failure has the password.
class MailerTest : public testing::Test {
  protected:
    MailerTest() {
        mailer_.setHost("127.0.0.1");
        mailer_.setTimeLimit(10s);
    }
    ~MailerTest() override {
        for (const char* secret : {kPassword, kEncodedLogon, kEncodedPassword}) {
            EXPECT_THAT(report_, Not(HasSubstr(secret)));
            EXPECT_THAT(mailer_.failure().detail, Not(HasSubstr(secret)));
        }
        std::istringstream lines(report_);
        for (std::string line; std::getline(lines, line);)
            EXPECT_THAT(line, StartsWith("sendEmail: "));
    }
    bool sendTo(const SmtpServer& server) {
        mailer_.setPort(server.port());
        return mailer_.send(makeEmail());
    }
    void useLogon() {
        mailer_.setUserName("operator");
        mailer_.setPassword(kPassword);
    }
    void trust(const TlsIdentity& identity) {
        mailer_.setHost("localhost");
        mailer_.setTrustedCertificates(identity.certificateFile());
    }

    std::string report_;
    Mailer mailer_{[this](const std::string& line) { report_.append(line).append("\n"); }};
};

TEST_F(MailerTest, SendsToEveryRecipientAndTakesLeave) {
    SmtpServer server({});
    EXPECT_TRUE(sendTo(server));
    EXPECT_TRUE(mailer_.close());
    EXPECT_THAT(server.commands(),
                ElementsAre(StartsWith("EHLO"), StartsWith("MAIL FROM:<console@site.example>"),
                            "RCPT TO:<a@site.example>", "RCPT TO:<b@site.example>", "DATA", ".", "QUIT"));
    EXPECT_THAT(server.message(), HasSubstr("\r\n\r\nHello\r\n.\r\n..dots\r\n"));
    EXPECT_THAT(server.message(), HasSubstr("To: \"a@site.example\"\r\n <a@site.example>,\r\n \"Guard\"\r\n <b@"));
    EXPECT_THAT(report_, HasSubstr("Email sent without TLS"));
    EXPECT_THAT(report_, Not(HasSubstr("in clear")));
}

TEST_F(MailerTest, WithTlsTheLogonAndTheMessageAreEncrypted) {
    const TlsIdentity identity("localhost");
    SmtpServer server({.features = {"STARTTLS", "AUTH PLAIN LOGIN"}, .startTls = identity.startTls()});
    useLogon();
    trust(identity);
    EXPECT_TRUE(sendTo(server)) << report_;
    EXPECT_TRUE(mailer_.close());
    EXPECT_THAT(server.commands(),
                ElementsAre(StartsWith("EHLO"), "STARTTLS", StartsWith("TLS EHLO"), "TLS AUTH PLAIN",
                            std::string("TLS ") + kEncodedLogon, StartsWith("TLS MAIL"), StartsWith("TLS RCPT"),
                            StartsWith("TLS RCPT"), "TLS DATA", "TLS .", "TLS QUIT"));
    EXPECT_THAT(report_, HasSubstr("Email sent with TLS"));
    EXPECT_THAT(report_, Not(HasSubstr("in clear")));
}

TEST_F(MailerTest, WithoutTlsTheLogSaysThatThePasswordGoesInClear) {
    SmtpServer server({.features = {"AUTH LOGIN"}});
    useLogon();
    EXPECT_TRUE(sendTo(server));
    EXPECT_EQ(server.connections(), 1);
    EXPECT_THAT(server.clearBytes(), HasSubstr("AUTH LOGIN\r\n"));
    EXPECT_THAT(report_, HasSubstr("the server offers no TLS, the password goes in clear"));
    report_.clear();
    SmtpServer open({});
    EXPECT_TRUE(sendTo(open));
    EXPECT_THAT(report_, HasSubstr("the server takes no logon"));
}

// The password is not sent, so it need not be encrypted. The challenges are in base64: "<1.2@test>"; of DIGEST-MD5
// 'realm="test",nonce="abc",qop="auth",algorithm=md5-sess,charset=utf-8', and the second one is not checked; of NTLM
// the shortest message of the second kind.
TEST_F(MailerTest, ChallengesAreAnsweredWithoutThePassword) {
    const std::tuple<const char*, std::vector<std::string>, testing::Matcher<std::string>> cases[] = {
        {"AUTH CRAM-MD5", {"PDEuMkB0ZXN0Pg=="}, "b3BlcmF0b3IgZGNiNTM1YWQ0MWI4M2ViNTVmMDUzNDNlODhkM2RkOTI="},
        {"AUTH DIGEST-MD5",
         {"cmVhbG09InRlc3QiLG5vbmNlPSJhYmMiLHFvcD0iYXV0aCIsYWxnb3JpdGhtPW1kNS1zZXNzLGNoYXJzZXQ9dXRmLTg=",
          "cnNwYXV0aD0x"},
         StartsWith("dXNlcm5hbWU9Im9wZXJhdG9yIi")},  // username="operator"
        {"AUTH NTLM", {"", "TlRMTVNTUAACAAAAAAAAAAAAAAABggAAMTIzNDU2Nzg="}, StartsWith("TlRMTVNTUAABAAAA")},
    };
    useLogon();
    for (const auto& [command, challenges, answer] : cases) {
        SCOPED_TRACE(command);
        SmtpServer server({.features = {std::string(command) + " PLAIN LOGIN"}, .challenges = challenges});
        EXPECT_TRUE(sendTo(server)) << report_;
        const std::vector<std::string> commands = server.commands();
        ASSERT_GT(commands.size(), 2u);
        EXPECT_EQ(commands[1], command);
        EXPECT_THAT(commands[2], answer);
        for (const char* secret : {kPassword, kEncodedLogon, kEncodedPassword})
            EXPECT_THAT(server.clearBytes(), Not(HasSubstr(secret)));
    }
    EXPECT_THAT(report_, Not(HasSubstr("in clear")));
}

// A server that offers TLS gets nothing in clear but the greeting and the wish for TLS, whatever it does then.
TEST_F(MailerTest, AfterTlsWasOfferedNothingGoesInClear) {
    const TlsIdentity own("localhost");
    const TlsIdentity other("localhost");
    const TlsIdentity foreign("elsewhere.example");
    const std::vector<std::string> features{"STARTTLS", "AUTH PLAIN"};
    // Answers ahead of TLS, which must not be taken for answers within.
    const std::string early = "250-x\r\n250 AUTH PLAIN\r\n235 welcome\r\n250 fine\r\n";
    const std::tuple<const char*, SmtpScript, const TlsIdentity&> cases[] = {
        {"the server said '454 not now'", {.features = features, .answers = {{"STARTTLS", "454 not now"}}}, own},
        {"handshake failure", {.features = features}, own},
        {"certificate", {.features = features, .startTls = other.startTls()}, own},
        {"subject name", {.features = features, .startTls = foreign.startTls()}, foreign},
        {"stage TLS", {.features = features, .dropAt = "STARTTLS"}, own},
        {"Weird server reply", {.features = features, .bytesAfterStartTls = early, .startTls = own.startTls()}, own},
    };
    useLogon();
    for (const auto& [reported, script, trusted] : cases) {
        SCOPED_TRACE(reported);
        report_.clear();
        SmtpServer server(script);
        trust(trusted);
        EXPECT_FALSE(sendTo(server));
        EXPECT_FALSE(mailer_.close());
        EXPECT_EQ(mailer_.failure().stage, MailStage::kTls);
        EXPECT_THAT(report_, HasSubstr(reported));
        EXPECT_EQ(server.connections(), 1);
        for (const char* verb : {"AUTH", "MAIL", "RCPT", "DATA", kEncodedLogon})
            EXPECT_THAT(server.clearBytes(), Not(HasSubstr(verb)));
        EXPECT_THAT(server.commands(), Each(AnyOf(StartsWith("EHLO"), "STARTTLS", "QUIT")));
    }
}

TEST_F(MailerTest, Port465SpeaksTlsFromTheFirstByte) {
    const TlsIdentity identity("localhost");
    SmtpServer server(
        {.port = Mailer::kTlsPort, .features = {"AUTH PLAIN"}, .startTls = identity.startTls(), .tlsFirst = true});
    ASSERT_TRUE(server.isListening()) << "port 465 of 127.0.0.1 is taken, or needs more rights";
    trust(identity);
    useLogon();
    EXPECT_TRUE(sendTo(server)) << report_;
    EXPECT_THAT(report_, HasSubstr("Email sent with TLS"));
    EXPECT_THAT(report_, Not(HasSubstr("in clear")));
    mailer_.setTrustedCertificates("");
    EXPECT_FALSE(sendTo(server));
    EXPECT_EQ(mailer_.failure().stage, MailStage::kTls);
}

TEST_F(MailerTest, AServerThatRefusesFallsSilentOrHangsUpEndsTheSendAtItsStage) {
    const std::pair<const char*, MailStage> cases[] = {{"greeting", MailStage::kConnect},
                                                       {"EHLO", MailStage::kConnect},
                                                       {"AUTH", MailStage::kLogon},
                                                       {"MAIL", MailStage::kSender},
                                                       {"RCPT", MailStage::kRecipient},
                                                       {"DATA", MailStage::kData},
                                                       {".", MailStage::kData}};
    const std::string refusal = "550 not\x1B here";
    useLogon();
    for (const auto& [command, stage] : cases) {
        const bool isGreeting = command == std::string("greeting");
        const std::pair<SmtpScript, const char*> servers[] = {
            {{.greeting = isGreeting ? refusal : "220 hello",
              .features = {"AUTH PLAIN"},
              .answers = {{command, refusal}, {"HELO", refusal}}},
             "; the server said '550 not? here'"},
            {{.features = {"AUTH PLAIN"}, .hangAt = command}, "time limit reached"},
            {{.features = {"AUTH PLAIN"}, .dropAt = command}, nameOf(stage)}};
        for (const auto& [script, reported] : servers) {
            SCOPED_TRACE(std::string(command).append(" ").append(reported));
            report_.clear();
            SmtpServer server(script);
            mailer_.setTimeLimit(script.hangAt.empty() ? 10'000ms : 300ms);
            const auto start = std::chrono::steady_clock::now();
            EXPECT_FALSE(sendTo(server));
            EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
            EXPECT_EQ(mailer_.failure().stage, stage);
            EXPECT_EQ(mailer_.failure().timedOut, !script.hangAt.empty());
            EXPECT_EQ(mailer_.failure().detail == "550 not? here", !script.answers.empty());
            EXPECT_THAT(report_, HasSubstr(reported));
        }
    }
    SmtpServer foreign({.features = {"AUTH UNHEARD-OF"}});
    EXPECT_FALSE(sendTo(foreign));
    EXPECT_EQ(mailer_.failure().stage, MailStage::kLogon);
    EXPECT_EQ(mailer_.failure().detail, "Login denied");
}

// The fixture looks for the secrets.
TEST_F(MailerTest, ARefusalThatRepeatsTheLogonIsReportedWithoutIt) {
    const std::string repeated = std::string(kEncodedLogon) + " " + kPassword + kEncodedPassword;
    SmtpServer server({.features = {"AUTH PLAIN"}, .answers = {{"verdict", "535 " + repeated}}});
    useLogon();
    EXPECT_FALSE(sendTo(server));
    EXPECT_EQ(mailer_.failure().stage, MailStage::kLogon);
    EXPECT_THAT(report_, HasSubstr("stage logon: Login denied; the server said '535 *** ******'"));
}

TEST_F(MailerTest, WhatCannotBeSentReachesNoServer) {
    SmtpServer server({});
    mailer_.setPort(server.port());
    Email email = makeEmail();
    email.subject = "a\r\nBcc: all@site.example";
    EXPECT_FALSE(mailer_.send(email));
    EXPECT_EQ(mailer_.failure().stage, MailStage::kSubject);
    for (const int port : {0, -1, 65'536}) {
        mailer_.setPort(port);
        EXPECT_FALSE(mailer_.send(makeEmail()));
    }
    mailer_.setPort(server.port());
    for (const char* host : {"", "  ", "127.0.0.1/x", "a b", "user@127.0.0.1", "127.0.0.1:25", "host\r\n"}) {
        mailer_.setHost(host);
        EXPECT_FALSE(mailer_.send(makeEmail())) << host;
        EXPECT_EQ(mailer_.failure().stage, MailStage::kHost) << host;
    }
    EXPECT_EQ(server.connections(), 0);
    report_.clear();
    mailer_.setHost(std::string(5000, 'x'));
    EXPECT_FALSE(mailer_.send(makeEmail()));
    EXPECT_LT(report_.size(), 600u);
}

TEST_F(MailerTest, AnAddressOfIpv6NeedsNoBrackets) {
    for (const char* host : {"::1", " [::1] "}) {
        report_.clear();
        mailer_.setHost(host);
        mailer_.setPort(1);
        EXPECT_FALSE(mailer_.send(makeEmail()));
        EXPECT_THAT(report_, StartsWith("sendEmail: Email goes to smtp://[::1]:1"));
    }
}

TEST(MailTaskTest, SendsBesideItsOwnerAndTellsTheOutcome) {
    const std::pair<SmtpScript, MailTask::Outcome> cases[] = {
        {{}, MailTask::Outcome::kSent},
        {{.answers = {{"QUIT", "421 in a mood"}}}, MailTask::Outcome::kSentNotClosed},
        {{.dropAt = "QUIT"}, MailTask::Outcome::kSentNotClosed},
        {{.hangAt = "QUIT"}, MailTask::Outcome::kSentNotClosed},
        {{.answers = {{"RCPT", "550 no"}}}, MailTask::Outcome::kFailed},
    };
    for (const auto& [script, outcome] : cases) {
        SmtpServer server(script);
        std::string report;
        std::promise<void> finished;
        MailTask task(
            {.host = "127.0.0.1", .port = server.port()}, makeEmail(), [&](const std::string& line) { report += line; },
            [&] { finished.set_value(); });
        ASSERT_EQ(finished.get_future().wait_for(10s), std::future_status::ready);
        EXPECT_EQ(task.outcome(), outcome);
        EXPECT_EQ(report.ends_with("not closed cleanly"), outcome == MailTask::Outcome::kSentNotClosed) << report;
    }
}

TEST(MailTaskTest, GivingUpEndsASendThatHangs) {
    SmtpServer server({.hangAt = "MAIL"});
    std::atomic<bool> finished{false};
    std::string report;
    {
        MailTask task(
            {.host = "127.0.0.1", .port = server.port()}, makeEmail(), [&](const std::string& line) { report = line; },
            [&] { finished = true; });
        EXPECT_TRUE(server.waitForCommand("MAIL"));
    }
    EXPECT_FALSE(finished);
    EXPECT_THAT(report, HasSubstr("stage sender: cancelled"));
}

}  // namespace
}  // namespace orvc
