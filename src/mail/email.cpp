#include "mail/email.h"

#include <algorithm>
#include <array>

#include "support/text.h"

namespace orvc {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kLongestAddress = 320;
constexpr std::size_t kLongestHeaderLine = 76;
constexpr std::size_t kLongestBodyLine = 998;
constexpr std::size_t kLongestQuotedLine = 76;
constexpr std::size_t kBytesPerWord = 39;  // with "Subject: " before them their word just fits a line

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

// One word a line; a character is never split between two.
std::string encodeWords(std::string_view text) {
    std::string words;
    while (!text.empty()) {
        std::size_t size = std::min(text.size(), kBytesPerWord);
        while (size > 1 && size < text.size() && continuesCharacter(text[size]))
            --size;
        if (!words.empty()) words += "\r\n ";
        words += "=?UTF-8?B?";
        words += encodeBase64(text.substr(0, size));
        words += "?=";
        text.remove_prefix(size);
    }
    return words;
}

std::string formatSubject(const std::string& subject) {
    constexpr std::string_view title = "Subject: ";
    // What looks like an encoded word is encoded itself, or it would be shown decoded.
    const bool asItStands = isAscii(subject) && title.size() + subject.size() <= kLongestHeaderLine &&
                            subject.find("=?") == std::string::npos;
    return std::string(title).append(asItStands ? subject : encodeWords(subject));
}

std::string formatName(const std::string& name) {
    if (!isAscii(name)) return encodeWords(name);
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted += '"';
}

std::string formatDate(std::int64_t seconds) {
    constexpr std::array days{"Thu", "Fri", "Sat", "Sun", "Mon", "Tue", "Wed"};  // 1970 began on a Thursday
    constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    constexpr std::int64_t secondsPerDay = 86'400;
    const std::int64_t day = seconds / secondsPerDay;
    const auto second = static_cast<int>(seconds % secondsPerDay);
    // Counted from March of year 0 in eras of 400 years, so that a leap day is the last of its year.
    const std::int64_t shifted = day + 719'468;
    const std::int64_t era = shifted / 146'097;
    const std::int64_t dayOfEra = shifted % 146'097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t month = (5 * dayOfYear + 2) / 153;  // 0 = March
    const auto dayOfMonth = static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1);
    const auto monthOfYear = static_cast<std::size_t>((month + 2) % 12);
    const auto year = static_cast<int>(yearOfEra + era * 400 + (monthOfYear < 2 ? 1 : 0));
    return formatText("%s, %02d %s %d %02d:%02d:%02d +0000", days[static_cast<std::size_t>(day % 7)], dayOfMonth,
                      months[monthOfYear], year, second / 3'600, second / 60 % 60, second % 60);
}

// Every line ended with CR LF, the last one too.
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

// Takes the next line off `lines`, which is ended as above; the line has no end.
std::string_view takeLine(std::string_view& lines) {
    const std::string_view line = lines.substr(0, lines.find(kLineEnd));
    lines.remove_prefix(line.size() + kLineEnd.size());
    return line;
}

bool isCarriedAsItStands(std::string_view lines) {
    while (!lines.empty()) {
        const std::string_view line = takeLine(lines);
        const bool isPlain = std::ranges::all_of(line, [](char c) { return !isControl(c) || c == '\t'; });
        if (line.size() > kLongestBodyLine || !isPlain || !isAscii(line)) return false;
    }
    return true;
}

std::string encodeQuotedPrintable(std::string_view lines) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(lines.size() + lines.size() / 2);
    while (!lines.empty()) {
        const std::string_view line = takeLine(lines);
        std::size_t column = 0;
        for (std::size_t at = 0; at < line.size(); ++at) {
            const auto c = static_cast<unsigned char>(line[at]);
            const bool isBlank = c == ' ' || c == '\t';
            const bool isPlain = isBlank ? at + 1 < line.size() : c > ' ' && c < 0x7F && c != '=';
            // A soft break needs a column of its own.
            const std::size_t width = isPlain ? 1 : 3;
            if (column + width >= kLongestQuotedLine) {
                encoded += "=\r\n";
                column = 0;
            }
            column += width;
            if (isPlain) {
                encoded += line[at];
            } else {
                encoded += '=';
                encoded += digits[c >> 4];
                encoded += digits[c & 15];
            }
        }
        encoded += kLineEnd;
    }
    return encoded;
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

std::vector<std::string> splitRecipients(std::string_view text) {
    std::vector<std::string> items;
    while (!text.empty()) {
        const std::string_view item = text.substr(0, text.find_first_of(",;"));
        text.remove_prefix(std::min(text.size(), item.size() + 1));
        const std::string_view trimmed = trimBlanks(item);
        if (!trimmed.empty()) items.emplace_back(trimmed);
    }
    return items;
}

std::optional<EmailFault> findFault(const Email& email) {
    if (hasControl(email.subject)) return EmailFault::kSubject;
    if (!isAddress(email.from)) return EmailFault::kSender;
    const auto isGood = [](const EmailRecipient& to) { return isAddress(to.address) && !hasControl(to.name); };
    if (email.to.empty() || !std::ranges::all_of(email.to, isGood)) return EmailFault::kRecipient;
    return std::nullopt;
}

std::string formatEmail(const Email& email, const EmailStamp& stamp) {
    const std::string lines = withWireLineEnds(email.body);
    const bool asItStands = isCarriedAsItStands(lines);
    const std::size_t at = email.from.rfind('@');
    const std::string domain = at == std::string::npos ? "localhost" : email.from.substr(at + 1);
    std::string text = "Date: ";
    text.append(formatDate(stamp.seconds)).append(kLineEnd);
    text.append("From: <").append(email.from).append(">\r\n");
    text += "To: ";
    for (const EmailRecipient& to : email.to) {
        if (&to != &email.to.front()) text += ",\r\n ";
        text.append(formatName(to.name)).append("\r\n <").append(to.address).append(">");
    }
    text.append(kLineEnd).append(formatSubject(email.subject)).append(kLineEnd);
    text.append("Message-ID: <").append(std::to_string(stamp.seconds)).append(".");
    text.append(stamp.unique).append("@").append(domain).append(">\r\n");
    text += "MIME-Version: 1.0\r\n";
    text.append("Content-Type: text/plain; charset=").append(isAscii(lines) ? "us-ascii" : "utf-8").append(kLineEnd);
    text.append("Content-Transfer-Encoding: ").append(asItStands ? "7bit" : "quoted-printable").append(kLineEnd);
    text.append(kLineEnd).append(asItStands ? lines : encodeQuotedPrintable(lines));
    return text;
}

}  // namespace orvc
