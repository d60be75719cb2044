// Payload files: the small XML file on the server that holds the text an Event speaks, or the e-mail that it sends.
#pragma once

#include <string>
#include <string_view>

#include "payload/payload_text.h"
#include "support/tracking_log.h"

namespace orvc {

// Which payload file a response has.
enum class PayloadKind { kNone, kSpokenText, kEmail };

// What an e-mail payload holds. Texts in 8-bit characters; several addresses stand in one text.
struct EventEmail {
    std::string from;
    std::string to;
    std::string cc;
    std::string bc;
    std::string subject;
    std::string body;

    bool operator==(const EventEmail&) const = default;
};

// The whole file. The text and the body are encoded, the other fields go in as they are: a double quote in one of them
// makes a file that cannot be read again.
std::string formatTtsFile(std::string_view text);
std::string formatEmailFile(const EventEmail& email);

// The text in a spoken-text payload's bytes; empty, with a line in the log, for bytes that are no such file.
std::string getTtsMessage(std::string_view bytes, TrackingLog& log);

// The e-mail in an e-mail payload's bytes; all empty, with a line in the log, for bytes that are no such file. A file
// with another outermost tag is logged and read all the same.
EventEmail processConfigurationFile(std::string_view bytes, TrackingLog& log);

}  // namespace orvc
