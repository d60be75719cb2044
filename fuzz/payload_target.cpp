// Payload files: any bytes, and files that the console writes itself.
#include "editors/event_file.h"
#include "fuzz/input.h"
#include "fuzz/silent_log.h"
#include "toolkit/xml.h"

namespace orvc {
namespace {

void checkElement(const XmlElement& element, std::string_view bytes, int depth) {
    const std::string_view content = element.content();
    const auto begin = reinterpret_cast<std::uintptr_t>(bytes.data());
    const auto at = reinterpret_cast<std::uintptr_t>(content.data());
    require(content.empty() || (at >= begin && at + content.size() <= begin + bytes.size()),
            "content lies within the file");
    for (const char* name : {"encoded", "subject", "a"})
        if (const auto value = element.attribute(name))
            require(bytes.find(*value) != std::string_view::npos, "an attribute stands in the file as it was read");
    for (const char* tag : {"TTS", "Email", "a"})
        if (const auto child = element.firstChild(tag); child && depth < 20) checkElement(*child, bytes, depth + 1);
}

std::string withoutLoss(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) >= 0x80) c = '\xFF';
    return text;
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
    switch (input.byte() % 3) {
        case 0: {
            const std::string_view file = input.rest();
            const std::vector<char> exact(file.begin(), file.end());
            const std::string_view bytes(exact.data(), exact.size());
            getTtsMessage(bytes, silent.log);
            processConfigurationFile(bytes, silent.log);
            XmlDocument document;
            if (document.load(bytes))
                if (const auto root = document.root()) checkElement(*root, bytes, 0);
            break;
        }
        case 1: {
            const std::string text(input.rest());
            require(getTtsMessage(formatTtsFile(text), silent.log) == withoutLoss(text), "a spoken text comes back");
            break;
        }
        default: {
            const EventEmail email{attributeText(input), attributeText(input), attributeText(input),
                                   attributeText(input), attributeText(input), std::string(input.rest())};
            const EventEmail back = processConfigurationFile(formatEmailFile(email), silent.log);
            require(back.from == email.from && back.to == email.to && back.cc == email.cc && back.bc == email.bc &&
                        back.subject == email.subject,
                    "an e-mail's fields come back");
            require(back.body == withoutLoss(email.body), "an e-mail's body comes back");
        }
    }
    return 0;
}
