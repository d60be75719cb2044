// E-mails: whatever a text holds, it stays in its field.
#include "toolkit/email.h"

#include "fuzz/input.h"

namespace orvc {
namespace {

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find("\r\n");
    require(end != std::string_view::npos, "every line is ended");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 2);
    require(line.find_first_of("\r\n") == std::string_view::npos, "a line end is CR LF");
    require(line.size() <= 998, "a line is no longer than mail can carry");
    return line;
}

// Returns the body.
std::string_view checkHeader(std::string_view message) {
    std::string fields;
    while (true) {
        const std::string_view line = takeLine(message);
        if (line.empty()) break;
        require(std::ranges::all_of(line, [](char c) { return c >= ' ' && c < 0x7F; }), "a header is printable ASCII");
        if (line.starts_with(' ')) {
            require(!fields.empty(), "the first line is a field");
            require(line.find_first_not_of(' ') != std::string_view::npos, "a folded line is not empty");
        } else {
            fields.append(line.substr(0, line.find(':'))).append(" ");
        }
    }
    require(fields == "Date From To Subject Message-ID MIME-Version Content-Type Content-Transfer-Encoding ",
            "a header has our fields, and each once");
    return message;
}

// The text that a body stands for, its lines ended by CR LF.
std::string decodeBody(std::string_view body, bool isQuoted) {
    std::string text;
    while (!body.empty()) {
        std::string_view line = takeLine(body);
        require(!isQuoted || line.size() <= 76, "a quoted line is short");
        const bool goesOn = isQuoted && line.ends_with('=');
        if (goesOn) line.remove_suffix(1);
        for (; !line.empty(); line.remove_prefix(1)) {
            require(line[0] == '\t' || (line[0] >= ' ' && line[0] < 0x7F), "a body is printable ASCII");
            if (isQuoted && line[0] == '=') {
                require(line.size() >= 3, "an escape is whole");
                text += static_cast<char>(std::strtoul(std::string(line.substr(1, 2)).c_str(), nullptr, 16));
                line.remove_prefix(2);
            } else {
                text += line[0];
            }
        }
        if (!goesOn) text += "\r\n";
    }
    return text;
}

// Whatever ended its lines, they are ended by CR LF.
std::string withMailsLineEnds(std::string_view text) {
    std::string lines;
    for (; !text.empty(); text.remove_prefix(1)) {
        if (text.starts_with("\r\n")) continue;
        lines.append(text[0] == '\r' || text[0] == '\n' ? "\r\n" : text.substr(0, 1));
    }
    return lines.append(lines.ends_with("\r\n") ? "" : "\r\n");
}

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    Input input(data, size);
    Email email;
    email.subject = input.text();
    email.from = input.text();
    for (const std::string& item : splitRecipients(input.text()))
        email.addTo(input.flag() ? input.text() : item, item);
    email.body = input.rest();
    if (findFault(email)) return 0;
    const std::string message = formatEmail(email, {input.word(), "abc123"});
    const std::string_view body = checkHeader(message);
    const bool isQuoted =
        message.find("Content-Transfer-Encoding: quoted-printable\r\n") < message.size() - body.size();
    require(decodeBody(body, isQuoted) == withMailsLineEnds(email.body), "the body arrives as it was written");
    return 0;
}
