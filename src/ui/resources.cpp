#include "ui/resources.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/text.h"
#include "win32/system_files.h"

namespace orvc::ui {
namespace {

HMODULE program() {
    return GetModuleHandleA(nullptr);
}

// The text of an 8-bit view of a table of wide strings. LoadStringA would cut long texts to a buffer.
std::string loadText(HMODULE module, unsigned id) {
    const wchar_t* text = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    if (length <= 0) return {};
    std::string narrow(
        static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr)), '\0');
    WideCharToMultiByte(CP_ACP, 0, text, length, narrow.data(), static_cast<int>(narrow.size()), nullptr, nullptr);
    return narrow;
}

const DLGTEMPLATE* findDialogIn(HMODULE module, unsigned id) {
    const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_DIALOG));
    if (found == nullptr) return nullptr;
    const HGLOBAL loaded = LoadResource(module, found);
    return loaded != nullptr ? static_cast<const DLGTEMPLATE*>(LockResource(loaded)) : nullptr;
}

}  // namespace

bool Resources::loadLanguage(const std::string& fileName) {
    const std::string path = win32::programFolder() + "\\" + fileName;
    if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return false;
    win32::UniqueModule library(
        LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    if (!library) return refuseLanguage(path, formatText("it cannot be loaded (error %lu)", GetLastError()));
    const std::string revision = loadText(library.get(), IDS_RESOURCE_REVISION);
    const std::string wanted = loadText(program(), IDS_RESOURCE_REVISION);
    if (revision != wanted)
        return refuseLanguage(path, revision.empty() ? "it has no resource revision"
                                                     : "its resource revision is " + revision + ", not " + wanted);
    language_ = std::move(library);
    return true;
}

// The same library may be a candidate twice, for the user and for the system; it is logged once.
bool Resources::refuseLanguage(const std::string& path, const std::string& reason) {
    std::string line = "loadLanguage: Language library '" + path + "' is not used: " + reason;
    if (std::ranges::find(refusedLanguages_, line) == refusedLanguages_.end())
        refusedLanguages_.push_back(std::move(line));
    return false;
}

std::string Resources::text(unsigned id) const {
    std::string text = language_ ? loadText(language_.get(), id) : std::string();
    return !text.empty() ? text : loadText(program(), id);
}

const DLGTEMPLATE* Resources::findDialog(unsigned id) const {
    const DLGTEMPLATE* found = language_ ? findDialogIn(language_.get(), id) : nullptr;
    return found != nullptr ? found : findDialogIn(program(), id);
}

win32::UniqueMenu Resources::loadMenu(unsigned id) const {
    win32::UniqueMenu menu(language_ ? LoadMenuA(language_.get(), MAKEINTRESOURCEA(id)) : nullptr);
    if (!menu) menu.reset(LoadMenuA(program(), MAKEINTRESOURCEA(id)));
    return menu;
}

win32::UniqueIcon Resources::loadIcon(unsigned id, int width) {
    return win32::UniqueIcon(
        static_cast<HICON>(LoadImageA(program(), MAKEINTRESOURCEA(id), IMAGE_ICON, width, width, 0)));
}

}  // namespace orvc::ui
