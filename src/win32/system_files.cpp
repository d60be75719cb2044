#include "win32/system_files.h"

#include <windows.h>

#include <shlobj.h>

#include <cstdio>

#include "support/text.h"
#include "win32/handles.h"

namespace orvc::win32 {

std::vector<std::string> SystemFiles::listFiles(const std::string& folder) const {
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    const UniqueFind search(FindFirstFileA((folder + "*.*").c_str(), &found));
    if (!search) return names;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) names.emplace_back(found.cFileName);
    } while (FindNextFileA(search.get(), &found));
    return names;
}

bool SystemFiles::deleteFile(const std::string& path) {
    return DeleteFileA(path.c_str()) != 0;
}

bool SystemFiles::removeFolder(const std::string& path) {
    return RemoveDirectoryA(path.c_str()) != 0;
}

bool SystemFiles::makeFolder(const std::string& path) {
    return CreateDirectoryA(path.c_str(), nullptr) != 0;
}

bool SystemFiles::folderExists(const std::string& path) const {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool SystemFiles::canRead(const std::string& path) const {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    std::fclose(file);
    return true;
}

std::string programPath() {
    std::string path(32768, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::string programFolder() {
    const std::string path = programPath();
    return path.substr(0, path.rfind('\\'));
}

std::string systemFolder() {
    std::string path(MAX_PATH, '\0');
    path.resize(GetSystemDirectoryA(path.data(), MAX_PATH));
    return path;
}

std::string applicationDataFolder() {
    char path[MAX_PATH] = "";
    return SHGetSpecialFolderPathA(nullptr, path, CSIDL_APPDATA, TRUE) ? path : "";
}

std::string environmentValue(const char* name) {
    std::string value(GetEnvironmentVariableA(name, nullptr, 0), '\0');
    if (!value.empty()) value.resize(GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

namespace {

// The version resource of a file; empty when it has none.
std::vector<char> readVersionBlock(const std::string& path) {
    DWORD unused = 0;
    std::vector<char> block(GetFileVersionInfoSizeA(path.c_str(), &unused));
    if (!block.empty() && !GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()))
        return {};
    return block;
}

}  // namespace

std::string fileVersionText(const std::string& path) {
    const std::vector<char> block = readVersionBlock(path);
    void* text = nullptr;
    UINT length = 0;
    if (block.empty() || !VerQueryValueA(block.data(), "\\StringFileInfo\\040904E4\\FileVersion", &text, &length) ||
        length == 0)
        return {};
    return std::string(untilZero({static_cast<const char*>(text), length}));
}

std::string fileVersionNumbers(const std::string& path) {
    const std::vector<char> block = readVersionBlock(path);
    void* found = nullptr;
    UINT length = 0;
    if (block.empty() || !VerQueryValueA(block.data(), "\\", &found, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return {};
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(found);
    return formatText("%d.%d.%d.%d", HIWORD(fixed.dwFileVersionMS), LOWORD(fixed.dwFileVersionMS),
                      HIWORD(fixed.dwFileVersionLS), LOWORD(fixed.dwFileVersionLS));
}

}  // namespace orvc::win32
