#include "windows/resource_files.h"

#include <commctrl.h>

namespace orvc::test {
namespace {

INT_PTR CALLBACK ignore(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

BOOL CALLBACK collect(HMODULE, LPCSTR, LPSTR name, LONG_PTR ids) {
    reinterpret_cast<std::vector<unsigned>*>(ids)->push_back(LOWORD(reinterpret_cast<ULONG_PTR>(name)));
    return TRUE;
}

std::string besideTheTests(const std::string& name) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string own(path);
    return own.substr(0, own.rfind('\\') + 1) + name;
}

}  // namespace

ResourceFile::ResourceFile(const std::string& name)
    : module_(LoadLibraryExA(besideTheTests(name).c_str(), nullptr,
                             LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {
    InitCommonControls();
}

ResourceFile::~ResourceFile() {
    FreeLibrary(module_);
}

std::wstring ResourceFile::text(unsigned id) const {
    const wchar_t* text = nullptr;
    const int length = LoadStringW(module_, id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

std::vector<unsigned> ResourceFile::dialogs() const {
    std::vector<unsigned> ids;
    EnumResourceNamesA(module_, reinterpret_cast<LPCSTR>(RT_DIALOG), collect, reinterpret_cast<LONG_PTR>(&ids));
    return ids;
}

HWND ResourceFile::openDialog(unsigned id) const {
    // A page has to have a parent.
    return CreateDialogParamA(module_, MAKEINTRESOURCEA(id), GetDesktopWindow(), ignore, 0);
}

std::vector<HWND> controlsOf(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        controls.push_back(child);
    return controls;
}

std::wstring windowText(HWND window) {
    wchar_t text[512] = L"";
    GetWindowTextW(window, text, 512);
    return text;
}

std::string classOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

}  // namespace orvc::test
