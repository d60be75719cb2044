// Payload files: any bytes, and files that the console writes itself.
#include "fuzz/input.h"
#include "fuzz/silent_log.h"
#include "payload/payload_file.h"
#include "payload/xml.h"

namespace orvc {
namespace {

void checkElement(const XmlElement& element, std::string_view bytes, int depth) {
    const std::string_view content = element.content();
    require(content.empty() ||
                (content.data() >= bytes.data() && content.data() + content.size() <= bytes.data() + bytes.size()),
            "content lies within the file");
    element.attribute("subject");
    for (const char* tag : {"TTS", "Email", "a"})
        if (const auto child = element.firstChild(tag); child && depth < 20) checkElement(*child, bytes, depth + 1);
}

// A double quote would end the attribute that it stands in.
std::string attributeText(Input& input) {
    std::string text = input.terminated();
    std::erase(text, '"');
    return text;
}

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    SilentLog silent;
    Input input(data, size);
    const unsigned kind = input.byte() % 3;
    if (kind == 0) {
        const std::vector<char> exact = input.restAsBlock();
        const std::string_view bytes(exact.data(), exact.size());
        getTtsMessage(bytes, silent.log);
        processConfigurationFile(bytes, silent.log);
        XmlDocument document;
        if (document.load(bytes))
            if (const auto root = document.root()) checkElement(*root, bytes, 0);
    } else if (kind == 1) {
        const std::string text(input.rest());
        require(getTtsMessage(formatTtsFile(text), silent.log) == withoutLoss(text), "a spoken text comes back");
    } else {
        EventEmail email{attributeText(input), attributeText(input), attributeText(input),
                         attributeText(input), attributeText(input), std::string(input.rest())};
        const EventEmail back = processConfigurationFile(formatEmailFile(email), silent.log);
        email.body = withoutLoss(email.body);
        require(back == email, "an e-mail comes back");
    }
    return 0;
}
