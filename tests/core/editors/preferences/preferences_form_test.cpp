#include "editors/preferences/preferences_form.h"

#include <gtest/gtest.h>

#include <tuple>

#include "editors/preferences/trial_email.h"
#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

TEST(EmailFormTest, APortOutOfRangeIsToldAndTakenAndOtherTextIsNot) {
    struct Case {
        const char* text;
        std::int32_t port;
        const char* message;
    };
    const char* range = "from 1 to 32000";
    const char* noNumber = "no number";
    const Case cases[] = {
        {"1", 1, nullptr},
        {" +032000 ", 32'000, nullptr},
        {"0", 0, range},
        {"32001", 32'001, range},
        {"-1", -1, range},
        {"99999999999999999999999999999999", 2'147'483'647, range},
        {"-99999999999999999999999999999999", -2'147'483'647 - 1, range},
        {" ", 587, noNumber},
        {"-", 587, noNumber},
        {"25x", 587, noNumber},
    };
    FakeStringTable strings;
    strings.texts = {{IDS_PORT_RANGE, "from %d to %d"}, {IDS_PORT_NO_NUMBER, noNumber}};
    for (const Case& test : cases) {
        MailSettings settings;
        settings.smtpPort = 587;
        EmailForm form(settings);
        form.portText = test.text;
        EXPECT_EQ(form.takePort(strings).value_or("-"), test.message != nullptr ? test.message : "-") << test.text;
        EXPECT_EQ(form.port(), test.port) << test.text;
        EXPECT_EQ(form.isChanged(), test.port != 587) << test.text;
        EXPECT_EQ(form.change().after.smtpPort, static_cast<std::uint32_t>(test.port)) << test.text;
    }
}

TEST(EmailFormTest, AbsentSettingsShowEmptyAndCountAsUnchanged) {
    EmailForm form{MailSettings()};
    EXPECT_EQ(form.userName + form.password + form.smtpHost + form.defaultFrom, "");
    EXPECT_EQ(form.portText, "25");
    EXPECT_FALSE(form.isChanged());
    for (const auto member :
         {&EmailForm::userName, &EmailForm::password, &EmailForm::smtpHost, &EmailForm::defaultFrom}) {
        form.*member = "x";
        EXPECT_TRUE(form.isChanged());
        const MailSettings settings = form.change().after;
        EXPECT_EQ(*settings.userName + *settings.password + *settings.smtpHost + *settings.defaultFrom, "x");
        form.*member = "";
        EXPECT_FALSE(form.isChanged());
    }
}

TEST(TrialEmailTest, TheTextsOfTheDialogsBecomeAnEmailAndItsServer) {
    const Utf8Converter mark = [](const std::string& text) { return "u" + text; };
    const Email email = makeTrialEmail({"Me <me@x>", ";a@x ,;\tA, B <b@x>, ", "", "", "Subject", "Text"}, mark);
    EXPECT_EQ(email.from.name + email.from.address, "uMeme@x");
    EXPECT_EQ(email.subject, "uSubject");
    EXPECT_EQ(email.body, "uText");
    ASSERT_EQ(email.to.size(), 4u);  // the mark is the first
    EXPECT_EQ(email.to[1].name, "a@x");
    EXPECT_EQ(email.to[3].address, "b@x");
    MailSettings settings;
    settings.smtpHost = "host";
    settings.userName = "user";
    settings.password = "secret";
    settings.smtpPort = 465;
    const MailServer server = mailServerOf(EmailForm(settings), mark);
    EXPECT_EQ(server.host + server.userName + server.password, "uhostuuserusecret");
    EXPECT_EQ(server.port, 465);
}

TEST(TrialEmailTest, TheResultIsOneSentence) {
    using Outcome = MailTask::Outcome;
    FakeStringTable strings;
    strings.texts = {{IDS_EMAIL_RESULT_LOGON, "The server did not accept the logon: %s"},
                     {IDS_EMAIL_RESULT_DATA, "The server did not accept the message: %s"},
                     {IDS_EMAIL_RESULT_NO_ANSWER, "no answer"},
                     {IDS_EMAIL_RESULT_START, "Not prepared"},
                     {IDS_EMAIL_RESULT_HOST, "Not a host"},
                     {IDS_EMAIL_RESULT_ACCEPTED, "Accepted"}};
    const std::tuple<Outcome, MailFailure, const char*> cases[] = {
        {Outcome::kFailed, {MailStage::kLogon, "535 100%s no"}, "The server did not accept the logon: 535 100%s no"},
        {Outcome::kFailed, {MailStage::kData, "x", true}, "The server did not accept the message: no answer"},
        {Outcome::kFailed, {MailStage::kHost}, "Not a host"},
        {Outcome::kFailed, {}, "Not prepared"},
        {Outcome::kSent, {}, "Accepted"},
        {Outcome::kSentNotClosed, {}, "Accepted"},
    };
    for (const auto& [outcome, failure, expected] : cases)
        EXPECT_EQ(resultText(outcome, failure, strings), expected);
}

}  // namespace
}  // namespace orvc
