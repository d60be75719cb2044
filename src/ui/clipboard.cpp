#include "ui/clipboard.h"

#include <cstring>

#include "win32/code_page.h"

namespace orvc::ui {

bool copyToClipboard(HWND owner, const std::string& text) {
    const std::wstring wide = win32::toWide(text);
    const std::size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (memory == nullptr) return false;
    std::memcpy(GlobalLock(memory), wide.c_str(), bytes);
    GlobalUnlock(memory);
    if (OpenClipboard(owner)) {
        EmptyClipboard();
        // The memory is the clipboard's from here on.
        const bool taken = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
        CloseClipboard();
        if (taken) return true;
    }
    GlobalFree(memory);
    return false;
}

}  // namespace orvc::ui
