#include "demo_server/core/payload.h"

namespace orvc::demo {
namespace {

constexpr std::string_view kOpening = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<ORVSEventFile>\r\n";
constexpr std::string_view kClosing = "</ORVSEventFile>\r\n";

// Element content as the console escapes it: control characters by number, the percent sign doubled. The texts that
// come with the demo server are plain ASCII.
std::string encodeContent(std::string_view text) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string encoded;
    for (const char byte : text) {
        switch (byte) {
            case '&':
                encoded += "&amp;";
                break;
            case '<':
                encoded += "&lt;";
                break;
            case '>':
                encoded += "&gt;";
                break;
            case '%':
                encoded += "%%";
                break;
            default:
                if (byte >= 0 && byte < 0x20) {
                    encoded += '%';
                    encoded += kDigits[byte >> 4];
                    encoded += kDigits[byte & 15];
                } else {
                    encoded += byte;
                }
        }
    }
    return encoded;
}

std::string wrap(const std::string& element) {
    std::string file(kOpening);
    file += '\t';
    file += element;
    file += "\r\n";
    file += kClosing;
    return file;
}

}  // namespace

std::string makeSpokenTextPayload(std::string_view text) {
    return wrap("<TTS voice=\"default\" encoded=\"yes\">" + encodeContent(text) + "</TTS>");
}

std::string makeEmailPayload(const EmailPayload& email) {
    std::string element = "<Email from=\"";
    element.append(email.from).append("\" to=\"").append(email.to).append("\" cc=\"\" bc=\"\" subject=\"");
    element.append(email.subject).append("\" encoded=\"yes\">").append(encodeContent(email.body)).append("</Email>");
    return wrap(element);
}

}  // namespace orvc::demo
