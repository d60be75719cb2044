// Payload files: small XML files on the server, each with the text that an Event speaks or the e-mail that it sends.
#pragma once

#include <string>
#include <string_view>

#include "payload/payload_text.h"
#include "support/tracking_log.h"

namespace orvc {

// Which payload file a response has.
enum class PayloadKind { kNone, kSpokenText, kEmail };

// The e-mail in a payload file, in 8-bit texts. A text can hold several addresses.
struct EventEmail {
    std::string from;
    std::string to;
    std::string cc;
    std::string bc;
    std::string subject;
    std::string body;

    bool operator==(const EventEmail&) const = default;
};

// The whole file. The text and the body are encoded. The other fields are written as they are: a double quote in one of
// them makes the file unreadable.
std::string formatTtsFile(std::string_view text);
std::string formatEmailFile(const EventEmail& email);

// The text in the bytes of a spoken-text payload file. Empty, with a line in the log, if the bytes are not such a file.
std::string getTtsMessage(std::string_view bytes, TrackingLog& log);

// The e-mail in the bytes of an e-mail payload file. Empty, with a line in the log, if the bytes are not such a file.
// If only the outermost tag is another one, logs that and reads the file.
EventEmail processConfigurationFile(std::string_view bytes, TrackingLog& log);

}  // namespace orvc
