// Texts in the code page of the machine, as everything else reads them.
#pragma once

#include <string>

namespace orvc::win32 {

// `text` in UTF-8. Bytes that are no character become the replacement character.
std::string toUtf8(const std::string& text);

}  // namespace orvc::win32
