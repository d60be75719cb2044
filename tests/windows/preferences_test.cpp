// The preferences and the e-mail that tests them, against a mail server beside the console.
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <tuple>

#include "mail_server/smtp_server.h"
#include "tour/mail_step.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class PreferencesTest : public ConsoleTest {
  protected:
    void openPreferences(const std::string& options = {}) {
        setInteger("recordEvents", 1);
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return !calls("KSSysVarSubscribe").empty(); }));
        reopenPreferences();
    }
    void reopenPreferences() {
        preferences_.emplace(console_);
        dialog_ = preferences_->window();
        email_ = preferences_->emailPage();
        general_ = preferences_->page(IDC_PREFERENCES_TRAY);
    }
    void close(unsigned button) {
        preferences_->close(button);
        expectClosed();
    }
    // What closing leads to has been done when the main window answers.
    void expectClosed() {
        ASSERT_TRUE(console_.waitUntilGone(dialog_));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(console_.mainWindow()) != 0; }));
        SendMessageA(console_.mainWindow(), WM_NULL, 0, 0);
    }
    // The calls of one function of the library.
    std::vector<std::string> calls(const std::string& function) const {
        std::vector<std::string> calls = tracedCalls();
        std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(function); });
        return calls;
    }
    std::vector<std::string> writes() const { return calls("KSSysVarSetValue"); }

    // Opens the test's dialog for a server and fills it in.
    void openTest(int port, const std::string& to) {
        preferences_->showEmailPage();
        preferences_->enter({"console", "pa55-word", "127.0.0.1", "console@site.example", port});
        test_ = preferences_->openTest({to, "T\xFCr", "Hello\r\n."});
        EXPECT_EQ(ConsoleDriver::textOf(test_, IDOK), "Send");
        EXPECT_EQ(ConsoleDriver::textOf(test_, IDC_EMAIL_FROM), "console@site.example");
    }
    // Sends to a server that falls silent at MAIL.
    void startSend(const SmtpServer& server) {
        openTest(server.port(), "a@site.example");
        ConsoleDriver::click(test_, IDOK);
        ASSERT_TRUE(server.waitForCommand("MAIL"));
    }
    void expectSent() {
        expectMessage("Successfully concluded email test", "Email Success");
        ASSERT_TRUE(console_.waitUntilGone(test_));
    }
    std::string result() const { return ConsoleDriver::textOf(email_, IDC_PREFERENCES_REASON); }
    bool logHasPart(const std::string& part) const {
        return std::ranges::any_of(logLines(),
                                   [&](const std::string& line) { return line.find(part) != std::string::npos; });
    }
    void expectLogged(const std::string& part) {
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return logHasPart(part); })) << part;
    }

    std::optional<driver::PreferencesDriver> preferences_;
    HWND dialog_ = nullptr;
    HWND general_ = nullptr;
    HWND email_ = nullptr;
    HWND test_ = nullptr;
};

TEST_F(PreferencesTest, ShowsTheServersSettingsAndWritesThemInTheOrderOfTheWriter) {
    openPreferences();
    EXPECT_TRUE(IsWindowVisible(general_));
    EXPECT_FALSE(IsWindowVisible(email_));
    preferences_->showEmailPage();
    EXPECT_FALSE(IsWindowVisible(general_));
    EXPECT_EQ(ConsoleDriver::textOf(email_, IDC_PREFERENCES_HOST), "mail.building.example");
    EXPECT_EQ(ConsoleDriver::textOf(email_, IDC_PREFERENCES_PORT), "587");
    preferences_->enter({"Console", "", "10.0.0.9", "c@x.example", 32'001});
    ConsoleDriver::click(dialog_, IDOK);
    expectMessage("Please enter an integer between 1 and 32000.");
    expectClosed();
    EXPECT_EQ(writes(), (std::vector<std::string>{"KSSysVarSetValue \\ORVS\\userName 0xC0000001 \"Console\" 7",
                                                  "KSSysVarSetValue \\ORVS\\password 0xC0000001 \"\" 0",
                                                  "KSSysVarSetValue \\ORVS\\smtpHost 0xC0000001 \"10.0.0.9\" 8",
                                                  "KSSysVarSetValue \\ORVS\\defaultFrom 0xC0000001 \"c@x.example\" 11",
                                                  "KSSysVarSetValue \\ORVS\\smtpPort 0xC0000004 32001 4",
                                                  "KSSysVarSetValue \\ORVS\\completeBits 0xC0000004 1 4"}));
    reopenPreferences();
    EXPECT_EQ(ConsoleDriver::textOf(email_, IDC_PREFERENCES_HOST), "10.0.0.9");
    EXPECT_EQ(ConsoleDriver::textOf(email_, IDC_PREFERENCES_PORT), "32001");
    ConsoleDriver::click(dialog_, IDOK);
    expectMessage("Please enter an integer between 1 and 32000.");
    expectClosed();
    EXPECT_EQ(writes().size(), 6u) << "nothing was changed";
    exitConsole();
}

TEST_F(PreferencesTest, CancelKeepsEverythingAndOkMinimizesToTheTrayAtOnce) {
    openPreferences();
    ConsoleDriver::click(general_, IDC_PREFERENCES_TRAY);
    ConsoleDriver::type(email_, IDC_PREFERENCES_PORT, "0");
    close(IDCANCEL);
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    reopenPreferences();
    EXPECT_EQ(ConsoleDriver::textOf(email_, IDC_PREFERENCES_PORT), "587");
    EXPECT_EQ(IsDlgButtonChecked(general_, IDC_PREFERENCES_TRAY), static_cast<UINT>(BST_UNCHECKED));
    ConsoleDriver::click(general_, IDC_PREFERENCES_TRAY);
    close(IDOK);
    EXPECT_TRUE(writes().empty());
    const HWND window = console_.mainWindow();
    ShowWindow(window, SW_MINIMIZE);
    EXPECT_TRUE(console_.waitUntilGone(window));
    PostMessageA(window, WM_COMMAND, IDM_EXIT, 0);
    ASSERT_TRUE(console_.waitForEnd());
    EXPECT_EQ(integer("hideMinimized"), 1u);
}

TEST_F(PreferencesTest, ATestEmailGoesOutWithTheSettingsAsTyped) {
    SmtpServer server({.features = {"AUTH PLAIN"}});
    openPreferences();
    openTest(server.port(), "a@site.example; b@site.example");
    ConsoleDriver::click(test_, IDOK);
    expectSent();
    EXPECT_EQ(result(), "The mail server accepted the test e-mail.");
    EXPECT_NE(server.message().find("\r\nSubject: =?UTF-8?B?VMO8cg==?=\r\n"), std::string::npos);
    EXPECT_NE(server.message().find("From: <console@site.example>\r\n"), std::string::npos);
    EXPECT_TRUE(server.message().ends_with("\r\n\r\nHello\r\n.\r\n"));
    EXPECT_TRUE(server.waitForCommand("RCPT TO:<b@site.example>"));
    expectLogged("sendEmail: the server offers no TLS, the password goes in clear");
    expectLogged("sendEmail: Email sent without TLS");
    EXPECT_FALSE(logHasPart("pa55-word"));
    // Nothing of the test is stored.
    EXPECT_EQ(ConsoleDriver::textOf(email_, IDC_PREFERENCES_USER), "console");
    close(IDCANCEL);
    EXPECT_TRUE(writes().empty());
}

// Once the server has offered TLS, a handshake that fails is the end: the password stays here.
TEST_F(PreferencesTest, ATestThatFailsIsToldAndCanBeTriedAgain) {
    const std::tuple<SmtpScript, const char*, const char*> cases[] = {
        {{.answers = {{"RCPT", "550 no such mailbox"}}},
         "stage recipient: RCPT failed: 550; the server said '550 no such",
         "The mail server did not accept a recipient: 550 no such mailbox"},
        {{.features = {"STARTTLS", "AUTH PLAIN"}},
         "stage TLS: schannel",
         "The encrypted connection to the mail server failed: schannel"}};
    openPreferences();
    EXPECT_EQ(result(), "");
    for (const auto& [script, logged, shown] : cases) {
        SmtpServer server(script);
        openTest(server.port(), "a@site.example");
        for (int i = 0; i < 2; ++i) {
            ConsoleDriver::click(test_, IDOK);
            expectMessage("Could not send email, invalid address?", "Email Send Error");
            EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(test_, IDOK); }));
        }
        expectLogged(logged);
        EXPECT_EQ(server.connections(), 2);
        for (const char* secret : {"AUTH", "Y29uc29sZ"})
            EXPECT_EQ(server.clearBytes().find(secret), std::string::npos) << secret;
        EXPECT_EQ(server.clearBytes().find("MAIL") == std::string::npos, !script.features.empty());
        ConsoleDriver::click(test_, IDCANCEL);
        ASSERT_TRUE(console_.waitUntilGone(test_));
        EXPECT_EQ(result().substr(0, std::strlen(shown)), shown);
    }
    // In the box with the result, Esc works as elsewhere.
    PostMessageA(GetDlgItem(email_, IDC_PREFERENCES_REASON), WM_KEYDOWN, VK_ESCAPE, 0);
    expectClosed();
}

TEST_F(PreferencesTest, TheWindowsLiveWhileAnEmailIsSentAndEscGivesUp) {
    SmtpServer server({.features = {"AUTH CRAM-MD5 PLAIN"}, .challenges = {"PDEuMkB0ZXN0Pg=="}, .hangAt = "MAIL"});
    openPreferences();
    ConsoleDriver::type(email_, IDC_PREFERENCES_REASON, "of the last test");
    startSend(server);
    EXPECT_TRUE(server.waitForCommand("AUTH CRAM-MD5"));
    EXPECT_EQ(result(), "");
    const HWND wait = console_.waitForWindowWith(IDC_WAIT_TEXT);
    ASSERT_NE(wait, nullptr);
    EXPECT_EQ(ConsoleDriver::textOf(wait), "Please Wait");
    EXPECT_EQ(ConsoleDriver::textOf(wait, IDC_WAIT_TEXT), "Sending Email");
    EXPECT_FALSE(ConsoleDriver::isEnabled(test_, IDOK));
    EXPECT_FALSE(ConsoleDriver::isEnabled(test_, IDC_EMAIL_TO));
    DWORD_PTR answer = 0;
    EXPECT_NE(SendMessageTimeoutA(console_.mainWindow(), WM_NULL, 0, 0, SMTO_NORMAL, 200, &answer), 0);
    // The please-wait window has the keyboard.
    PostMessageA(wait, WM_KEYDOWN, VK_ESCAPE, 1);
    ASSERT_TRUE(console_.waitUntilGone(test_, 3000));
    EXPECT_TRUE(console_.waitUntilGone(wait, 1000));
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    expectLogged("cancelled");
    EXPECT_EQ(result(), "");
    close(IDCANCEL);
    exitConsole();
}

// The send ends while the logon is open: neither takes the other along.
TEST_F(PreferencesTest, AServerStopWhileAnEmailIsSentAsksForTheLogonFirst) {
    SmtpServer server({.hangAt = "MAIL"});
    openPreferences("stop-once=5");
    startSend(server);
    const HWND logon = console_.logonDialog();
    ASSERT_NE(logon, nullptr);
    server.resume();
    expectLogged("Email sent");
    Sleep(500);
    EXPECT_TRUE(IsWindowVisible(logon));
    EXPECT_EQ(console_.findMessageBox(), nullptr);
    console_.enterLogon("admin", "admin");
    expectSent();
    close(IDCANCEL);
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
