// Texts without regard to case and accents.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvc::win32 {

// Letters in lower case and without their accents; those that are letters of their own as plain ones: "ß" becomes "ss".
std::wstring foldWide(std::wstring_view text);

// Folds texts of a code page, 0 for the machine's own, and gives them in UTF-8. Takes any bytes. The function may be
// copied and called on any thread.
std::function<std::string(std::string_view)> makeTextFolder(unsigned codePage = 0);

}  // namespace orvc::win32
