#include "editors/preferences/preferences_form.h"

#include <gtest/gtest.h>

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
    const Email email = makeTrialEmail({"me@x ", ";a@x ,;\tb@x, ", "", "", "Subject", "Text"}, mark);
    EXPECT_EQ(email.from, "ume@x");
    EXPECT_EQ(email.subject, "uSubject");
    EXPECT_EQ(email.body, "uText");
    ASSERT_EQ(email.to.size(), 3u);  // the mark is the first
    EXPECT_EQ(email.to[1].name, "a@x");
    EXPECT_EQ(email.to[2].address, "b@x");
    MailSettings settings;
    settings.smtpHost = "host";
    settings.userName = "user";
    settings.password = "secret";
    settings.smtpPort = 465;
    const MailServer server = mailServerOf(EmailForm(settings), mark);
    EXPECT_EQ(server.host + server.userName + server.password, "uhostuuserusecret");
    EXPECT_EQ(server.port, 465);
}

}  // namespace
}  // namespace orvc
