#include "editors/preferences/trial_email.h"

#include "resources/resource.h"

namespace orvc {

MailServer mailServerOf(const EmailForm& form, const Utf8Converter& toUtf8) {
    MailServer server;
    server.host = toUtf8(form.smtpHost);
    server.userName = toUtf8(form.userName);
    server.password = toUtf8(form.password);
    server.port = form.port();
    return server;
}

Email makeTrialEmail(const EventEmail& texts, const Utf8Converter& toUtf8) {
    Email email;
    email.subject = toUtf8(texts.subject);
    email.body = toUtf8(texts.body);
    email.from = trimBlanks(toUtf8(texts.from));
    for (const std::string& recipient : splitRecipients(toUtf8(texts.to)))
        email.addTo(recipient, recipient);
    return email;
}

std::vector<TrialMessage> messagesFor(MailTask::Outcome outcome) {
    constexpr TrialMessage sent{IDS_EMAIL_TEST_SENT, IDS_EMAIL_TEST_SENT_CAPTION};
    constexpr TrialMessage notClosed{IDS_EMAIL_TEST_NOT_CLOSED, IDS_EMAIL_TEST_ERROR_CAPTION};
    constexpr TrialMessage failed{IDS_EMAIL_TEST_FAILED, IDS_EMAIL_TEST_ERROR_CAPTION};
    switch (outcome) {
        case MailTask::Outcome::kSent:
            return {sent};
        case MailTask::Outcome::kSentNotClosed:
            return {sent, notClosed};
        default:
            return {failed};
    }
}

}  // namespace orvc
