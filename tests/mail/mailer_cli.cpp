// Sends one e-mail as the test of the Preferences does.
//
// Arguments are name=value: host, port, user, password, from, to, subject, message, trusted (a PEM file) and limit
// (milliseconds). Prints the lines of the support log and then "sent", "sent, not closed" or "failed".
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "editors/preferences/trial_email.h"

int main(int count, char** arguments) {
    using namespace orvc;
    std::map<std::string, std::string> given;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        const std::size_t separator = argument.find('=');
        given[argument.substr(0, separator)] = argument.substr(separator + 1);
    }
    ServerSettings settings;
    settings.smtpHost = given["host"];
    settings.userName = given["user"];
    settings.password = given["password"];
    settings.smtpPort = static_cast<std::uint32_t>(std::atoi(given["port"].c_str()));
    EventEmail texts;
    texts.from = given["from"];
    texts.to = given["to"];
    texts.subject = given["subject"];
    texts.body = given["message"];
    const Utf8Converter asItStands = [](const std::string& text) { return text; };
    const MailServer server = mailServerOf(EmailForm(settings), asItStands);
    Mailer mailer([](const std::string& line) { std::printf("%s\n", line.c_str()); });
    mailer.setHost(server.host);
    mailer.setUserName(server.userName);
    mailer.setPassword(server.password);
    mailer.setPort(server.port);
    mailer.setTrustedCertificates(given["trusted"]);
    mailer.setTimeLimit(std::chrono::milliseconds(std::atoi(given["limit"].c_str())));
    const bool sent = mailer.send(makeTrialEmail(texts, asItStands));
    std::puts(!sent ? "failed" : mailer.close() ? "sent" : "sent, not closed");
    return 0;
}
