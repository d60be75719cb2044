// The clipboard.
#pragma once

#include <windows.h>

#include <string>

namespace orvc::ui {

// Puts a text there, for whatever program asks next. Returns false when another program holds the clipboard or memory
// has run out; what was there is then there still, or gone.
bool copyToClipboard(HWND owner, const std::string& text);

}  // namespace orvc::ui
