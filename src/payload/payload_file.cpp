#include "payload/payload_file.h"

#include <optional>

#include "payload/xml.h"

namespace orvc {
namespace {

constexpr std::string_view kOpening = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<ORVSEventFile>\r\n\t";
constexpr std::string_view kClosing = "\r\n</ORVSEventFile>\r\n";

// Loads `bytes` and finds the element `tag`. For both kinds of payload, the log has the routine names that support
// knows.
std::optional<XmlElement> findPayload(XmlDocument& document, std::string_view bytes, const char* tag,
                                      TrackingLog& log) {
    if (!document.load(bytes)) {
        log.log("getTtsMessage: LoadXml failed");
        return std::nullopt;
    }
    const std::optional<XmlElement> root = document.root();
    if (!root) {
        log.log("getTtsMessage: XML Root not found");
        return std::nullopt;
    }
    if (!root->hasTag("ORVSEventFile")) log.log("processConfigurationFile: Configuration not found");
    return root->firstChild(tag);
}

std::string readText(const XmlElement& payload) {
    const std::string_view content = payload.content();
    return payload.attribute("encoded") == "yes" ? decodeEventText(content) : std::string(content);
}

}  // namespace

std::string formatTtsFile(std::string_view text) {
    std::string file(kOpening);
    file += "<TTS voice=\"default\" encoded=\"yes\">";
    appendEncodedEventText(text, file);
    file.append("</TTS>").append(kClosing);
    return file;
}

std::string formatEmailFile(const EventEmail& email) {
    std::string file(kOpening);
    file.append("<Email from=\"").append(email.from);
    file.append("\" to=\"").append(email.to);
    file.append("\" cc=\"").append(email.cc);
    file.append("\" bc=\"").append(email.bc);
    file.append("\" subject=\"").append(email.subject);
    file += "\" encoded=\"yes\">";
    appendEncodedEventText(email.body, file);
    file.append("</Email>").append(kClosing);
    return file;
}

std::string getTtsMessage(std::string_view bytes, TrackingLog& log) {
    XmlDocument document;
    const std::optional<XmlElement> payload = findPayload(document, bytes, "TTS", log);
    return payload ? readText(*payload) : std::string();
}

EventEmail processConfigurationFile(std::string_view bytes, TrackingLog& log) {
    XmlDocument document;
    const std::optional<XmlElement> payload = findPayload(document, bytes, "Email", log);
    if (!payload) return {};
    const auto read = [&](const char* name) { return std::string(payload->attribute(name).value_or("")); };
    return {read("from"), read("to"), read("cc"), read("bc"), read("subject"), readText(*payload)};
}

}  // namespace orvc
