// The test e-mail: from the texts of the template dialog to the messages about the result.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "editors/preferences/preferences_form.h"
#include "mail/mail_task.h"
#include "payload/payload_file.h"

namespace orvc {

// Converts a text from the code page of the machine to UTF-8.
using Utf8Converter = std::function<std::string(const std::string& text)>;

// The mail server with the settings of the Email page.
MailServer mailServerOf(const EmailForm& form, const Utf8Converter& toUtf8);

// The e-mail of the template dialog: "From" and each item of "To" as parseMailbox() and parseRecipients() read them.
Email makeTrialEmail(const EventEmail& texts, const Utf8Converter& toUtf8);

// A message box.
struct TrialMessage {
    unsigned text;  // ids of the string table
    unsigned caption;
};

// The boxes to show, in order.
std::vector<TrialMessage> messagesFor(MailTask::Outcome outcome);

// The result on the Email page: one sentence. `failure` counts if the outcome is kFailed.
std::string resultText(MailTask::Outcome outcome, const MailFailure& failure, const StringTable& strings);

}  // namespace orvc
