// An e-mail as text: what stands on the wire between DATA and the closing dot.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvc {

struct EmailRecipient {
    std::string name;
    std::string address;
};

// All texts are UTF-8. The console's own texts are in the code page of the machine, which only the machine can turn
// into something that another one reads; UTF-8 is understood everywhere and needs no name of a code page in the
// message.
struct Email {
    void addTo(std::string name, std::string address) { to.push_back({std::move(name), std::move(address)}); }

    std::string subject;
    std::string body;  // any line ends
    std::string from;  // an address
    std::vector<EmailRecipient> to;
};

// The items of a "To" text: separated by comma or semicolon, blanks around them dropped, empty ones skipped.
std::vector<std::string> splitRecipients(std::string_view text);

// `text` without blanks and tabs at its ends.
std::string_view trimBlanks(std::string_view text);

std::string encodeBase64(std::string_view bytes);

enum class EmailFault { kSubject, kSender, kRecipient };

// Why an e-mail must not be sent; nothing when it may. A control character in the subject, the sender or a recipient
// would end its line of the header and begin another. An address is printable ASCII without blanks and angle brackets,
// of at most 320 characters; a zero byte in the body is no fault. There must be a recipient.
std::optional<EmailFault> findFault(const Email& email);

// What a message says about its making.
struct EmailStamp {
    std::int64_t seconds = 0;  // since 1970 UTC
    std::string unique;        // no other message of this second has it; letters and digits
};

// The whole message, every line ended with CR LF: plain text, as it stands where it is ASCII in lines that mail can
// carry, otherwise quoted-printable. A subject of other characters, or one that is too long for a line, becomes encoded
// words. `email` has no fault.
std::string formatEmail(const Email& email, const EmailStamp& stamp);

}  // namespace orvc
