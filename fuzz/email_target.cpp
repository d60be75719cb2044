// E-mails: whatever a text holds, it stays in its field.
#include "mail/email.h"

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
    require(std::ranges::all_of(line, [](char c) { return c == '\t' || (c >= ' ' && c < 0x7F); }), "a mail is ASCII");
    return line;
}

// Returns the body.
std::string_view checkHeader(std::string_view message) {
    std::string fields;
    while (true) {
        const std::string_view line = takeLine(message);
        if (line.empty()) break;
        require(line.find('\t') == std::string_view::npos, "a header has no tabs");
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

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    Input input(data, size);
    Email email;
    email.subject = input.text();
    email.from = parseMailbox(input.text());
    email.to = parseRecipients(input.text());
    for (Mailbox& to : email.to)
        if (input.flag()) to.name = input.text();
    email.body = input.rest();
    if (findFault(email)) return 0;
    const std::string message = formatEmail(email, {input.word(), "abc123"});
    std::string_view body = checkHeader(message);
    while (!body.empty())
        takeLine(body);
    return 0;
}
