// The resources of the program and of its language libraries, for tests that compare and measure them.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstring>
#include <string>
#include <vector>

#include "windows/console_fixture.h"

namespace orvc::test {

// Files beside the tests: the program, which speaks English, and every language library.
inline constexpr const char* kResourceFiles[] = {"ORVSConfig.exe", "ORVSConfig0007.dll", "ORVSConfig000c.dll"};

// One of these files, opened as resources only. `module()` is null when it cannot be.
class ResourceFile {
  public:
    explicit ResourceFile(const std::string& name)
        : module_(LoadLibraryExA((ConsoleTest::binFolder() + "\\" + name).c_str(), nullptr,
                                 LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {
        InitCommonControls();
    }
    ~ResourceFile() { FreeLibrary(module_); }
    ResourceFile(const ResourceFile&) = delete;
    ResourceFile& operator=(const ResourceFile&) = delete;

    HMODULE module() const { return module_; }
    // The text of an id; empty when there is none.
    std::wstring text(unsigned id) const {
        const wchar_t* text = nullptr;
        const int length = LoadStringW(module_, id, reinterpret_cast<wchar_t*>(&text), 0);
        return std::wstring(length > 0 ? text : L"", static_cast<std::size_t>(length));
    }
    std::vector<unsigned> dialogs() const {
        std::vector<unsigned> ids;
        EnumResourceNamesA(module_, reinterpret_cast<LPCSTR>(RT_DIALOG), collect, reinterpret_cast<LONG_PTR>(&ids));
        return ids;
    }
    // Opens a dialog that does nothing and is not shown; null when there is none of that id. The caller destroys it.
    HWND openDialog(unsigned id) const {
        // A page has to have a parent.
        return CreateDialogParamA(module_, MAKEINTRESOURCEA(id), GetDesktopWindow(), nullptr, 0);
    }
    // The same with a font of that size: as large as on a display with more dots per inch.
    HWND openDialog(unsigned id, WORD pointSize) const {
        const HRSRC found = FindResourceA(module_, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_DIALOG));
        if (found == nullptr) return nullptr;
        const auto* bytes = static_cast<const BYTE*>(LockResource(LoadResource(module_, found)));
        std::vector<WORD> words(SizeofResource(module_, found) / sizeof(WORD));
        std::memcpy(words.data(), bytes, words.size() * sizeof(WORD));
        // An extended template: menu, class and title come first, then the font's size.
        std::size_t at = 13;
        for (int text = 0; text < 3; ++text) {
            if (words[at] == 0xFFFF)
                at += 2;
            else
                while (words[at++] != 0) {
                }
        }
        words[at] = pointSize;
        return CreateDialogIndirectParamA(module_, reinterpret_cast<const DLGTEMPLATE*>(words.data()),
                                          GetDesktopWindow(), nullptr, 0);
    }

  private:
    static BOOL CALLBACK collect(HMODULE, LPCSTR, LPSTR name, LONG_PTR ids) {
        reinterpret_cast<std::vector<unsigned>*>(ids)->push_back(LOWORD(reinterpret_cast<ULONG_PTR>(name)));
        return TRUE;
    }

    HMODULE module_;
};

// A dialog's controls in the order of its template.
inline std::vector<HWND> controlsOf(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        controls.push_back(child);
    return controls;
}

inline std::wstring windowText(HWND window) {
    wchar_t text[512] = L"";
    GetWindowTextW(window, text, 512);
    return text;
}

// The letter that is underlined in a text, in lower case; 0 when there is none. "&&" is a plain sign.
inline wchar_t underlinedLetter(const std::wstring& text) {
    std::size_t sign = text.find(L'&');
    while (sign != std::wstring::npos && text.compare(sign, 2, L"&&") == 0)
        sign = text.find(L'&', sign + 2);
    wchar_t letter = sign == std::wstring::npos ? L'\0' : text.c_str()[sign + 1];
    CharLowerBuffW(&letter, 1);
    return letter;
}

// "Button", "Edit" and the like.
inline std::string classOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

}  // namespace orvc::test
