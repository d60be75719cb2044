#include "tour/console_texts.h"

#include <windows.h>

#include "support/language.h"

namespace orvc::driver {
namespace {

HMODULE openBeside(const std::string& name) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string own(path);
    return LoadLibraryExA((own.substr(0, own.rfind('\\') + 1) + name).c_str(), nullptr,
                          LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
}

// Opened at the first question and open until this program ends.
struct Sources {
    HMODULE library = nullptr;
    unsigned language = 0;
    HMODULE console = openBeside("ORVSConfig.exe");

    Sources() {
        const auto found = chooseLanguage(languageCandidates(GetUserDefaultLangID(), GetSystemDefaultLangID()),
                                          [this](std::uint16_t candidate) {
                                              library = openBeside(languageLibraryName(candidate));
                                              return library != nullptr;
                                          });
        language = found.value_or(0);
    }
};

const Sources& sources() {
    static const Sources opened;
    return opened;
}

std::string narrow(const wchar_t* text, int length, UINT codePage) {
    std::string bytes(3 * static_cast<std::size_t>(length), '\0');
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(codePage, 0, text, length, bytes.data(),
                                                              static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

std::string loadText(HMODULE module, unsigned id) {
    const wchar_t* text = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? narrow(text, length, CP_ACP) : std::string();
}

}  // namespace

std::string consoleText(unsigned id) {
    const std::string text = sources().library != nullptr ? loadText(sources().library, id) : std::string();
    return !text.empty() ? text : loadText(sources().console, id);
}

unsigned consoleLanguage() {
    return sources().language;
}

std::string toUtf8(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                                                             wide.data(), static_cast<int>(wide.size()))));
    return narrow(wide.data(), static_cast<int>(wide.size()), CP_UTF8);
}

}  // namespace orvc::driver
