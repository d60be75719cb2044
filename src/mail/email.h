// An e-mail as text: what is sent between DATA and the closing dot.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvc {

// A sender or a recipient. Without a name, only the address is shown.
struct Mailbox {
    std::string name;
    std::string address;
};

// All texts are UTF-8: the code page of one machine means nothing to another.
struct Email {
    std::string subject;
    std::string body;  // any line ends
    Mailbox from;
    std::vector<Mailbox> to;
};

// Reads `address`, `Name <address>` or `"Name, with any characters" <address>`. Any other text becomes the address as
// it is; findFault() rejects it if it cannot be one.
Mailbox parseMailbox(std::string_view text);

// The items of a "To" text. Commas and semicolons separate them, except inside quotation marks and angle brackets;
// empty items are skipped. The name of an address without a name is the address.
std::vector<Mailbox> parseRecipients(std::string_view text);

// `text` without blanks and tabs at its ends.
std::string_view trimBlanks(std::string_view text);

std::string encodeBase64(std::string_view bytes);

enum class EmailFault { kSubject, kSender, kRecipient };

// Why an e-mail must not be sent; empty if it may. A control character in the subject, the sender or a recipient would
// end its header line and start another. An address is at most 320 printable ASCII characters without blanks and angle
// brackets. There must be a recipient. The body may hold anything, also zero bytes.
std::optional<EmailFault> findFault(const Email& email);

// Makes a message unique.
struct EmailStamp {
    std::int64_t seconds = 0;  // since 1970 UTC
    std::string unique;        // letters and digits that no other message of this second has
};

// The whole message: plain text, with every line ended by CR LF. The body is unchanged if it is ASCII in lines that
// mail can carry, else quoted-printable. A subject or name that is not ASCII or too long for a line becomes encoded
// words. `email` must be free of faults.
std::string formatEmail(const Email& email, const EmailStamp& stamp);

}  // namespace orvc
