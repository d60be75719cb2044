#include "win32/code_page.h"

#include <windows.h>

namespace orvc::win32 {

std::wstring toWide(const std::string& text) {
    const auto size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string fromWide(const std::wstring& wide) {
    const auto size = static_cast<int>(wide.size());
    std::string text(
        static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, wide.data(), size, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), size, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
    return text;
}

std::string toUtf8(const std::string& text) {
    const std::wstring wide = toWide(text);
    const auto wideSize = static_cast<int>(wide.size());
    std::string utf8(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, utf8.data(), static_cast<int>(utf8.size()), nullptr,
                        nullptr);
    return utf8;
}

}  // namespace orvc::win32
