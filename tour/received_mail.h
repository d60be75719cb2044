// Reads an e-mail as its recipient does: header fields and text, decoded.
#pragma once

#include <string>

namespace orvc::driver {

// The value of a header field of a message whose lines end with CR LF: unfolded, encoded words decoded, UTF-8; empty
// when there is no such field.
std::string headerField(const std::string& message, const std::string& name);

// The text behind the header, its transfer encoding undone.
std::string bodyText(const std::string& message);

}  // namespace orvc::driver
