// The payload files of Events that speak a text or send an e-mail, as the console writes them.
#pragma once

#include <string>
#include <string_view>

namespace orvc::demo {

struct EmailPayload {
    std::string_view from;
    std::string_view to;
    std::string_view subject;
    std::string_view body;
};

std::string makeSpokenTextPayload(std::string_view text);

// Copies are left empty. Addresses and subject stand as they are, so they must not hold a double quote.
std::string makeEmailPayload(const EmailPayload& email);

}  // namespace orvc::demo
