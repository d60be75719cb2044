#include "demo_server/windows/surroundings.h"

#include <windows.h>

#include <shlobj.h>

#include <string>

#include "demo_server/windows/owned_handle.h"

namespace orvc::demo {
namespace fs = std::filesystem;
namespace {

std::string toUtf8(const std::wstring& wide) {
    const int size = static_cast<int>(wide.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
    return text;
}

}  // namespace

fs::path pathFromUtf8(std::string_view text) {
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
    return fs::path(std::move(wide));
}

Options readOptions() {
    constexpr wchar_t kName[] = L"ORVC_DEMO";
    std::wstring text(GetEnvironmentVariableW(kName, nullptr, 0), L'\0');
    if (!text.empty()) text.resize(GetEnvironmentVariableW(kName, text.data(), static_cast<DWORD>(text.size())));
    return parseOptions(toUtf8(text));
}

fs::path installationPath(const Options& options) {
    if (!options.file.empty()) return pathFromUtf8(options.file);
    wchar_t folder[MAX_PATH];
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder))) return {};
    return fs::path(folder) / L"Kestrel Sonics" / L"DemoServer" / L"installation.txt";
}

void appendTraceLine(const fs::path& path, std::string_view line) {
    const OwnedHandle file(CreateFileW(path.c_str(), FILE_APPEND_DATA,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    const std::string whole = std::string(line) + "\r\n";
    DWORD written = 0;
    WriteFile(file.get(), whole.data(), static_cast<DWORD>(whole.size()), &written, nullptr);
}

}  // namespace orvc::demo
