// Payload files: the small XML file on the server that holds the text an Event speaks, or the e-mail that it sends.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "editors/event_text.h"
#include "link/ks_types.h"
#include "link/server_link.h"
#include "support/tracking_log.h"

namespace orvc {

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

// Write the whole file under a GUID that was created just before. A refused write is logged; a GUID text that does not
// scan is logged too and the write attempted under the null GUID. User-interface thread.
void writeEventFileTts(ServerLink& link, TrackingLog& log, const std::string& guidText, std::string_view text);
void writeEventFileEmail(ServerLink& link, TrackingLog& log, const std::string& guidText, const EventEmail& email);

// The text in a spoken-text payload's bytes; empty, with a line in the log, for bytes that are no such file.
std::string getTtsMessage(std::string_view bytes, TrackingLog& log);

// The e-mail in an e-mail payload's bytes; all empty, with a line in the log, for bytes that are no such file. A file
// with another outermost tag is logged and read all the same.
EventEmail processConfigurationFile(std::string_view bytes, TrackingLog& log);

// A new GUID on each call.
using GuidMaker = std::function<KSGuid()>;

// The text of a new GUID, for the key of a new Event or the name of a payload file:
// "{01234567-89AB-CDEF-0123-456789ABCDEF}", 38 characters.
std::string newGuidText(const GuidMaker& makeNew);

}  // namespace orvc
