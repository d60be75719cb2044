#include "mail/email.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "support/text.h"

namespace orvc {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kLongestAddress = 320;
constexpr std::size_t kLongestHeaderLine = 76;
constexpr std::size_t kLongestBodyLine = 998;
constexpr std::size_t kLongestQuotedLine = 76;
constexpr std::size_t kBytesPerWord = 39;  // "Subject: " and an encoded word of so many bytes just fit a line

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

bool hasControl(std::string_view text) {
    return std::ranges::any_of(text, isControl);
}

bool isAscii(std::string_view text) {
    return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

bool isAddress(std::string_view text) {
    return !text.empty() && text.size() <= kLongestAddress &&
           std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7F' && c != '<' && c != '>'; });
}

bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// One encoded word per line. A word holds whole characters only.
std::string encodeWords(std::string_view text) {
    std::string words;
    while (!text.empty()) {
        std::size_t size = std::min(text.size(), kBytesPerWord);
        while (size > 1 && size < text.size() && continuesCharacter(text[size]))
            --size;
        if (!words.empty()) words += "\r\n ";
        words.append("=?UTF-8?B?").append(encodeBase64(text.substr(0, size))).append("?=");
        text.remove_prefix(size);
    }
    return words;
}

// `plain` if it is ASCII and fits a line after `fieldName`, else `text` as encoded words. A text that looks like an
// encoded word is encoded too: a reader would decode it.
std::string formatHeaderText(std::string_view fieldName, const std::string& plain, std::string_view text) {
    const bool isPlain = isAscii(plain) && fieldName.size() + plain.size() <= kLongestHeaderLine &&
                         plain.find("=?") == std::string::npos;
    return isPlain ? plain : encodeWords(text);
}

std::string formatMailbox(std::string_view fieldName, const Mailbox& mailbox) {
    std::string address = "<" + mailbox.address + ">";
    if (mailbox.name.empty()) return address;
    std::string quoted = "\"";
    for (const char c : mailbox.name) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    quoted += '"';
    return formatHeaderText(fieldName, quoted, mailbox.name) + "\r\n " + address;
}

std::string formatDate(std::int64_t seconds) {
    using namespace std::chrono;
    constexpr std::array dayNames{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const sys_days day = floor<days>(sys_seconds(std::chrono::seconds(seconds)));
    const year_month_day date(day);
    const auto second = static_cast<int>(seconds % 86'400);
    return formatText("%s, %02u %s %d %02d:%02d:%02d +0000", dayNames[weekday(day).c_encoding()],
                      static_cast<unsigned>(date.day()), monthNames[static_cast<unsigned>(date.month()) - 1],
                      static_cast<int>(date.year()), second / 3'600, second / 60 % 60, second % 60);
}

// Ends every line with CR LF, also the last one.
std::string withWireLineEnds(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 16);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\r' && text[at] != '\n') {
            lines += text[at];
            continue;
        }
        if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
        lines += kLineEnd;
    }
    if (!lines.ends_with(kLineEnd)) lines += kLineEnd;
    return lines;
}

// Removes the next line from `lines`, all of which end with CR LF, and returns it without its end.
std::string_view takeLine(std::string_view& lines) {
    const std::string_view line = lines.substr(0, lines.find(kLineEnd));
    lines.remove_prefix(line.size() + kLineEnd.size());
    return line;
}

bool canBeSentAsItIs(std::string_view lines) {
    while (!lines.empty()) {
        const std::string_view line = takeLine(lines);
        const bool isPlain = std::ranges::all_of(line, [](char c) { return !isControl(c) || c == '\t'; });
        if (line.size() > kLongestBodyLine || !isPlain || !isAscii(line)) return false;
    }
    return true;
}

std::string encodeQuotedPrintable(std::string_view lines) {
    std::string encoded;
    encoded.reserve(lines.size() + lines.size() / 2);
    while (!lines.empty()) {
        const std::string_view line = takeLine(lines);
        std::size_t column = 0;
        for (std::size_t at = 0; at < line.size(); ++at) {
            const char c = line[at];
            const bool isBlank = c == ' ' || c == '\t';
            const bool isPlain = isBlank ? at + 1 < line.size() : c > ' ' && c < '\x7F' && c != '=';
            const std::string written =
                isPlain ? std::string(1, c) : formatText("=%02X", static_cast<unsigned char>(c));
            // A soft line break is a "=" and needs a column too.
            if (column + written.size() >= kLongestQuotedLine) {
                encoded += "=\r\n";
                column = 0;
            }
            encoded += written;
            column += written.size();
        }
        encoded += kLineEnd;
    }
    return encoded;
}

// The number of characters before the first comma or semicolon outside quotation marks and angle brackets.
std::size_t sizeOfFirstItem(std::string_view recipients) {
    char closing = 0;  // ends the quotation or the brackets; 0 outside both
    for (std::size_t at = 0; at < recipients.size(); ++at) {
        const char c = recipients[at];
        if (closing == '"' && c == '\\') {
            ++at;
        } else if (closing != 0) {
            if (c == closing) closing = 0;
        } else if (c == '"' || c == '<') {
            closing = c == '"' ? c : '>';
        } else if (c == ',' || c == ';') {
            return at;
        }
    }
    return recipients.size();
}

}  // namespace

std::string encodeBase64(std::string_view bytes) {
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view part = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i)
            bits = bits << 8 | (i < part.size() ? static_cast<unsigned char>(part[i]) : 0u);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= part.size() ? letters[bits >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

std::string_view trimBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Mailbox parseMailbox(std::string_view text) {
    text = trimBlanks(text);
    std::string name;
    bool isQuoted = false;
    std::size_t at = 0;
    for (; at < text.size() && (isQuoted || text[at] != '<'); ++at) {
        if (text[at] == '"') {
            isQuoted = !isQuoted;
            continue;
        }
        if (isQuoted && text[at] == '\\' && at + 1 < text.size()) ++at;
        name += text[at];
    }
    if (at == text.size() || !text.ends_with('>')) return {{}, std::string(text)};
    const std::string_view address = text.substr(at + 1, text.size() - at - 2);
    return {std::string(trimBlanks(name)), std::string(trimBlanks(address))};
}

std::vector<Mailbox> parseRecipients(std::string_view text) {
    std::vector<Mailbox> recipients;
    while (!text.empty()) {
        const std::string_view item = text.substr(0, sizeOfFirstItem(text));
        text.remove_prefix(std::min(text.size(), item.size() + 1));
        if (trimBlanks(item).empty()) continue;
        Mailbox recipient = parseMailbox(item);
        if (recipient.name.empty()) recipient.name = recipient.address;
        recipients.push_back(std::move(recipient));
    }
    return recipients;
}

std::optional<EmailFault> findFault(const Email& email) {
    const auto isBad = [](const Mailbox& mailbox) { return !isAddress(mailbox.address) || hasControl(mailbox.name); };
    if (hasControl(email.subject)) return EmailFault::kSubject;
    if (isBad(email.from)) return EmailFault::kSender;
    if (email.to.empty() || std::ranges::any_of(email.to, isBad)) return EmailFault::kRecipient;
    return std::nullopt;
}

std::string formatEmail(const Email& email, const EmailStamp& stamp) {
    const std::string lines = withWireLineEnds(email.body);
    const bool asItIs = canBeSentAsItIs(lines);
    const std::string& sender = email.from.address;
    const std::size_t at = sender.rfind('@');
    std::string text;
    const auto addField = [&text](std::string_view name, std::string_view value) {
        text.append(name).append(value).append(kLineEnd);
    };
    addField("Date: ", formatDate(stamp.seconds));
    addField("From: ", formatMailbox("From: ", email.from));
    std::string recipients;
    for (const Mailbox& to : email.to)
        recipients.append(recipients.empty() ? "" : ",\r\n ").append(formatMailbox("To: ", to));
    addField("To: ", recipients);
    addField("Subject: ", formatHeaderText("Subject: ", email.subject, email.subject));
    addField("Message-ID: ", formatText("<%s.%s@%s>", std::to_string(stamp.seconds).c_str(), stamp.unique.c_str(),
                                        at == std::string::npos ? "localhost" : sender.c_str() + at + 1));
    addField("MIME-Version: ", "1.0");
    addField("Content-Type: ", isAscii(lines) ? "text/plain; charset=us-ascii" : "text/plain; charset=utf-8");
    addField("Content-Transfer-Encoding: ", asItIs ? "7bit" : "quoted-printable");
    addField("", "");
    return text.append(asItIs ? lines : encodeQuotedPrintable(lines));
}

}  // namespace orvc
