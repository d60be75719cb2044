#include "editors/preferences/trial_email.h"

#include "resources/resource.h"
#include "support/text.h"

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
    email.from = parseMailbox(toUtf8(texts.from));
    email.to = parseRecipients(toUtf8(texts.to));
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

std::string resultText(MailTask::Outcome outcome, const MailFailure& failure, const StringTable& strings) {
    if (outcome != MailTask::Outcome::kFailed) return strings.text(IDS_EMAIL_RESULT_ACCEPTED);
    const std::string detail = failure.timedOut ? strings.text(IDS_EMAIL_RESULT_NO_ANSWER) : failure.detail;
    return fillIn(strings.text(IDS_EMAIL_RESULT_START + static_cast<unsigned>(failure.stage)), {detail});
}

}  // namespace orvc
