// The e-mail that tries the settings: from the template dialog's texts to what the operator is told about it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "editors/preferences/preferences_form.h"
#include "mail/mail_task.h"
#include "payload/payload_file.h"

namespace orvc {

// Turns a text of the console, in the code page of the machine, into UTF-8.
using Utf8Converter = std::function<std::string(const std::string& text)>;

// The server that the Email page names.
MailServer mailServerOf(const EmailForm& form, const Utf8Converter& toUtf8);

// The e-mail of the template dialog: each item of "To" is a recipient's name and address.
Email makeTrialEmail(const EventEmail& texts, const Utf8Converter& toUtf8);

// A message box.
struct TrialMessage {
    unsigned text;  // ids of the string table
    unsigned caption;
};

// What the operator is told, one box after the other.
std::vector<TrialMessage> messagesFor(MailTask::Outcome outcome);

}  // namespace orvc
