#include "tour/mail_step.h"

#include <cstdio>
#include <vector>

#include "mail_server/smtp_server.h"
#include "resources/resource.h"
#include "tour/console_texts.h"
#include "tour/received_mail.h"
#include "tour/stored_installation.h"

namespace orvc::driver {
namespace {

void requireSame(const std::string& what, const std::string& found, const std::string& expected) {
    require(found == expected, what + " is \"" + found + "\" and not \"" + expected + "\"");
}

// Text of this program in the machine's code page, as it is typed; signs that the code page lacks become others.
std::string toCodePage(const std::wstring& text) {
    const auto length = static_cast<int>(text.size());
    std::string bytes(4 * text.size(), '\0');
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(),
                                                              static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

void expectMessage(HWND box, const std::string& text, const std::string& caption) {
    requireSame("the message", ConsoleDriver::messageText(box), text);
    requireSame("the message's caption", ConsoleDriver::textOf(box), caption);
}

void printReceived(const SmtpServer& server) {
    std::printf("    The mail server was told:\n");
    for (const std::string& command : server.commands())
        std::printf("      %s\n", command.starts_with("EHLO") ? "EHLO" : command.c_str());
    std::printf("    and received, decoded:\n");
    const std::string message = server.message();
    for (const char* name : {"Date", "From", "To", "Subject", "Content-Type", "Content-Transfer-Encoding"})
        std::printf("      %s: %s\n", name, headerField(message, name).c_str());
    std::string body = bodyText(message);
    if (body.ends_with("\r\n")) body.resize(body.size() - 2);
    for (std::size_t at = 0; (at = body.find("\r\n", at)) != std::string::npos; at += 7)
        body.replace(at, 2, "\n      ");
    std::printf("\n      %s\n", body.c_str());
    std::fflush(stdout);
}

void checkReceived(const SmtpServer& server, const MailSettings& settings, const std::vector<std::string>& recipients,
                   const MailTexts& texts) {
    std::vector<std::string> envelope;
    for (const std::string& command : server.commands())
        if (command.starts_with("MAIL FROM") || command.starts_with("RCPT TO")) envelope.push_back(command);
    require(envelope.size() == 1 + recipients.size(), "the number of recipients is not the one that was typed");
    // The sender may have parameters behind it.
    requireSame("the sender", envelope[0].substr(0, envelope[0].find('>') + 1), "MAIL FROM:<" + settings.from + ">");
    std::string to;
    for (std::size_t i = 0; i < recipients.size(); ++i) {
        requireSame("a recipient", envelope[i + 1], "RCPT TO:<" + recipients[i] + ">");
        to += (to.empty() ? "\"" : ", \"") + recipients[i] + "\" <" + recipients[i] + ">";
    }
    const std::string message = server.message();
    requireSame("From", headerField(message, "From"), "<" + settings.from + ">");
    requireSame("To", headerField(message, "To"), to);
    requireSame("Subject", headerField(message, "Subject"), toUtf8(texts.subject));
    requireSame("the text", bodyText(message), toUtf8(texts.message) + "\r\n");
}

void showFailedTest(ConsoleDriver& console, PreferencesDriver& preferences, MailSettings settings,
                    const Narrator& narrator) {
    const std::string refusal = "535 5.7.8 Authentication credentials invalid";
    const SmtpServer server({.features = {"AUTH PLAIN"}, .answers = {{"verdict", refusal}}});
    require(server.isListening(), "no port is free for a second mail server");
    settings.port = server.port();
    preferences.enter(settings);
    const HWND test = preferences.openTest({"porter@clinic.example", "Test", "Test"});
    const HWND box = preferences.send(test);
    expectMessage(box, consoleText(IDS_EMAIL_TEST_FAILED), consoleText(IDS_EMAIL_TEST_ERROR_CAPTION));
    ConsoleDriver::click(box, IDOK);
    require(console.waitUntilGone(box), "the message did not close");
    ConsoleDriver::click(test, IDCANCEL);
    require(console.waitUntilGone(test), "the dialog of the test e-mail did not close");
    const std::string reason = ConsoleDriver::textOf(preferences.emailPage(), IDC_PREFERENCES_REASON);
    require(reason.ends_with(refusal), "the reason is \"" + reason + "\"");
    narrator.takePicture(preferences.window(), "preferences-reason");
}

// The demo server writes its file shortly after a change.
void checkStored(const std::string& installation, const MailSettings& settings) {
    ConsoleDriver::waitUntil([&] { return StoredInstallation(installation).setting("smtpHost") == settings.host; });
    const StoredInstallation stored(installation);
    requireSame("the stored user name", stored.setting("userName"), settings.userName);
    requireSame("the stored password", stored.setting("password"), settings.password);
    requireSame("the stored host", stored.setting("smtpHost"), settings.host);
    requireSame("the stored sender", stored.setting("defaultFrom"), settings.from);
    requireSame("the stored port", stored.setting("smtpPort"), std::to_string(settings.port));
}

}  // namespace

// ---------------------------------------------------------------------------------------------------------------------

PreferencesDriver::PreferencesDriver(ConsoleDriver& console) : console_(console) {
    dialog_ = console_.open(IDM_PREFERENCES, IDC_PREFERENCES_TABS);
    require(dialog_ != nullptr, "no Preferences appeared");
    email_ = page(IDC_PREFERENCES_HOST);
    require(email_ != nullptr, "the Preferences have no Email page");
}

HWND PreferencesDriver::page(unsigned control) const {
    HWND found = nullptr;
    while ((found = FindWindowExA(dialog_, found, nullptr, nullptr)) != nullptr &&
           GetDlgItem(found, static_cast<int>(control)) == nullptr)
        ;
    return found;
}

void PreferencesDriver::showEmailPage() {
    console_.clickTab(dialog_, IDC_PREFERENCES_TABS, 1);
    require(ConsoleDriver::waitUntil([&] { return IsWindowVisible(email_) != 0; }), "the Email page did not appear");
}

void PreferencesDriver::enter(const MailSettings& settings) {
    ConsoleDriver::type(email_, IDC_PREFERENCES_USER, settings.userName);
    ConsoleDriver::type(email_, IDC_PREFERENCES_PASSWORD, settings.password);
    ConsoleDriver::type(email_, IDC_PREFERENCES_HOST, settings.host);
    ConsoleDriver::type(email_, IDC_PREFERENCES_FROM, settings.from);
    ConsoleDriver::type(email_, IDC_PREFERENCES_PORT, std::to_string(settings.port));
}

HWND PreferencesDriver::openTest(const MailTexts& texts) {
    ConsoleDriver::click(email_, IDC_PREFERENCES_TEST);
    const HWND test = console_.waitForWindowWith(IDC_EMAIL_FROM);
    require(test != nullptr, "no dialog for the test e-mail appeared");
    require(!ConsoleDriver::isEnabled(test, IDOK), "an empty e-mail can be sent");
    ConsoleDriver::type(test, IDC_EMAIL_TO, texts.to);
    ConsoleDriver::type(test, IDC_EMAIL_SUBJECT, texts.subject);
    ConsoleDriver::type(test, IDC_EMAIL_MESSAGE, texts.message);
    require(ConsoleDriver::isEnabled(test, IDOK), "the test e-mail cannot be sent");
    return test;
}

HWND PreferencesDriver::send(HWND test) {
    ConsoleDriver::click(test, IDOK);
    const HWND box = console_.waitForMessageBox();
    require(box != nullptr, "no message told how the test e-mail went");
    return box;
}

void PreferencesDriver::close(unsigned button) {
    ConsoleDriver::click(dialog_, button);
    require(console_.waitUntilGone(dialog_), "the Preferences did not close");
}

void tryEmail(ConsoleDriver& console, const std::string& installation, const Narrator& narrator) {
    narrator.step("Look at the Preferences");
    PreferencesDriver preferences(console);
    narrator.takePicture(preferences.window(), "preferences-general");
    preferences.showEmailPage();

    const SmtpServer server({.features = {"AUTH PLAIN"}});
    require(server.isListening(), "no port is free for a mail server");
    const MailSettings settings{"console", "pa55-word", "127.0.0.1", "console@clinic.example", server.port()};
    narrator.step("Enter a mail server, which the tour runs on port " + std::to_string(settings.port));
    preferences.enter(settings);
    narrator.takePicture(preferences.window(), "preferences-email");

    narrator.step("Try another mail server, which does not accept the logon, and read the reason");
    showFailedTest(console, preferences, settings, narrator);

    narrator.step("Try the mail server with an e-mail to three recipients");
    preferences.enter(settings);
    const std::vector<std::string> recipients{"porter@clinic.example", "night@clinic.example", "it@clinic.example"};
    const MailTexts texts{"porter@clinic.example; night@clinic.example, ,it@clinic.example",
                          toCodePage(L"T\u00FCr 3 ge\u00F6ffnet \u2013 bitte pr\u00FCfen"),
                          toCodePage(L"Gr\u00FC\u00DFe vom Empfang:\r\n.\r\n 100 % = \u00BE von 5 \u20AC")};
    const HWND test = preferences.openTest(texts);
    requireSame("From", ConsoleDriver::textOf(test, IDC_EMAIL_FROM), settings.from);
    narrator.takePicture(test, "email-test");
    const HWND box = preferences.send(test);
    narrator.takePicture(box, "email-test-sent");
    expectMessage(box, consoleText(IDS_EMAIL_TEST_SENT), consoleText(IDS_EMAIL_TEST_SENT_CAPTION));
    ConsoleDriver::click(box, IDOK);
    require(console.waitUntilGone(test), "the dialog of the test e-mail did not close");
    printReceived(server);
    checkReceived(server, settings, recipients, texts);

    narrator.step("Save the Preferences, and compare with what the server stored");
    require(StoredInstallation(installation).setting("smtpHost") != settings.host, "the test has stored its settings");
    preferences.close(IDOK);
    checkStored(installation, settings);
}

}  // namespace orvc::driver
