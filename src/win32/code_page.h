// Texts in the code page of the machine, as everything else reads them.
#pragma once

#include <string>

namespace orvc::win32 {

// `text` in UTF-8 and in Windows' own 16-bit form. Bytes that are no character become the replacement character.
std::string toUtf8(const std::string& text);
std::wstring toWide(const std::string& text);
// The other way; a character that the code page lacks becomes a question mark.
std::string fromWide(const std::wstring& wide);

}  // namespace orvc::win32
