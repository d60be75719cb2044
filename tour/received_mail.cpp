#include "tour/received_mail.h"

#include <windows.h>

#include <wincrypt.h>

#include <algorithm>
#include <cstdlib>
#include <regex>

namespace orvc::driver {
namespace {

std::string decodeBase64(const std::string& text) {
    const auto length = static_cast<DWORD>(text.size());
    DWORD size = length;
    std::string bytes(size, '\0');
    if (!CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64, reinterpret_cast<BYTE*>(bytes.data()), &size,
                              nullptr, nullptr))
        return {};
    bytes.resize(size);
    return bytes;
}

std::string decodeQuotedPrintable(const std::string& text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '=') {
            bytes += text[at];
            continue;
        }
        const std::string code = text.substr(at + 1, 2);
        if (code != "\r\n") bytes += static_cast<char>(std::strtoul(code.c_str(), nullptr, 16));
        at += 2;
    }
    return bytes;
}

// Encoded words of UTF-8 in base64, which is what the console writes.
std::string decodeWords(std::string text) {
    static const std::regex betweenWords(R"(\?=\s+=\?)");
    static const std::regex word(R"(=\?UTF-8\?B\?([A-Za-z0-9+/=]*)\?=)");
    text = std::regex_replace(text, betweenWords, "?==?");
    std::string decoded;
    std::smatch match;
    while (std::regex_search(text, match, word)) {
        decoded += match.prefix().str() + decodeBase64(match[1]);
        text = match.suffix();
    }
    return decoded + text;
}

}  // namespace

std::string headerField(const std::string& message, const std::string& name) {
    const std::string header = "\r\n" + message.substr(0, message.find("\r\n\r\n") + 2);
    const std::size_t found = header.find("\r\n" + name + ": ");
    if (found == std::string::npos) return {};
    std::string value = header.substr(found + name.size() + 4);
    std::size_t end = 0;
    // A line that begins with a blank goes on with the one before it.
    while ((end = value.find("\r\n", end)) != std::string::npos && end + 2 < value.size() &&
           (value[end + 2] == ' ' || value[end + 2] == '\t'))
        value.erase(end, 2);
    value.resize(std::min(end, value.size()));
    return decodeWords(value);
}

std::string bodyText(const std::string& message) {
    const std::size_t end = message.find("\r\n\r\n");
    if (end == std::string::npos) return {};
    const std::string body = message.substr(end + 4);
    return headerField(message, "Content-Transfer-Encoding") == "quoted-printable" ? decodeQuotedPrintable(body) : body;
}

}  // namespace orvc::driver
