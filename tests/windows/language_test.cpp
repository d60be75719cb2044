// The language libraries hold what the program holds, in their own words; and the program takes the right one.
#include <algorithm>
#include <regex>
#include <set>

#include "windows/console_fixture.h"
#include "windows/resource_files.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

// How a failed comparison names a text.
std::string narrow(const std::wstring& text) {
    std::string narrow(text.size() * 4, '\0');
    narrow.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                               narrow.data(), static_cast<int>(narrow.size()), nullptr,
                                                               nullptr)));
    return narrow;
}

// The console carries texts as 8-bit ones: what the code page of Western Europe lacks would become a question mark.
bool isInCodePage(const std::wstring& text) {
    BOOL lost = FALSE;
    WideCharToMultiByte(1252, WC_NO_BEST_FIT_CHARS, text.c_str(), -1, nullptr, 0, nullptr, &lost);
    return lost == FALSE;
}

// What a text must share with the English one: its placeholders in their order, a file filter's patterns and bars, the
// lines' number, and whether a letter is underlined.
std::vector<std::string> skeletonOf(const std::wstring& text) {
    const std::string bytes = narrow(text);
    static const std::regex part(R"(%\d*[a-zA-Z]|%|\|[^|]*\*[^|]*\||\||\n|&)");
    return {std::sregex_token_iterator(bytes.begin(), bytes.end(), part), {}};
}

std::string describeControls(HWND dialog) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0)), sizeof font, &font);
    std::string described = narrow(font.lfFaceName) + " " + std::to_string(font.lfHeight) + "\n";
    const auto describe = [&](HWND window, long id) {
        char line[200] = "";
        char name[64] = "";
        GetClassNameA(window, name, sizeof name);
        wsprintfA(line, "%ld %s %08lx %08lx\n", id, name, GetWindowLongA(window, GWL_STYLE),
                  GetWindowLongA(window, GWL_EXSTYLE));
        described += line;
    };
    describe(dialog, 0);
    for (const HWND control : controlsOf(dialog))
        describe(control, GetDlgCtrlID(control));
    return described;
}

// A line per item: its depth, its command ("popup" and "separator" for the others), and whether a letter is underlined.
void describeMenu(HMENU menu, const std::string& depth, std::string& described) {
    std::set<std::string> letters;
    for (int item = 0; item < GetMenuItemCount(menu); ++item) {
        wchar_t text[200] = L"";
        GetMenuStringW(menu, static_cast<UINT>(item), text, 200, MF_BYPOSITION);
        EXPECT_TRUE(isInCodePage(text)) << narrow(text);
        const HMENU popup = GetSubMenu(menu, item);
        const UINT id = GetMenuItemID(menu, item);
        described += depth;
        described += popup != nullptr ? std::string("popup") : id == 0 ? std::string("separator") : std::to_string(id);
        if (const wchar_t* letter = wcschr(text, L'&')) {
            described += " &";
            const auto lower = static_cast<wchar_t>(
                reinterpret_cast<ULONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(ULONG_PTR{letter[1]}))));
            EXPECT_TRUE(letters.insert(narrow({lower})).second) << "twice in one menu: " << narrow(letter);
        }
        described += "\n";
        if (popup != nullptr) describeMenu(popup, depth + "  ", described);
    }
}

std::string describeMenu(const ResourceFile& file, unsigned id) {
    std::string described;
    const HMENU menu = LoadMenuA(file.module(), MAKEINTRESOURCEA(id));
    describeMenu(menu, "", described);
    DestroyMenu(menu);
    return described;
}

std::string acceleratorsOf(const ResourceFile& file) {
    const HRSRC found =
        FindResourceA(file.module(), MAKEINTRESOURCEA(IDR_MAIN_ACCELERATORS), reinterpret_cast<LPCSTR>(RT_ACCELERATOR));
    if (found == nullptr) return {};
    return {static_cast<const char*>(LockResource(LoadResource(file.module(), found))),
            SizeofResource(file.module(), found)};
}

TEST(LanguageLibraries, HoldEverythingThatTheProgramHolds) {
    const ResourceFile program(kResourceFiles[0]);
    ASSERT_TRUE(program.isOpen());
    for (const char* name : {kResourceFiles[1], kResourceFiles[2]}) {
        SCOPED_TRACE(name);
        const ResourceFile library(name);
        ASSERT_TRUE(library.isOpen());
        EXPECT_EQ(library.dialogs(), program.dialogs());
        for (const unsigned id : program.dialogs()) {
            SCOPED_TRACE("dialog " + std::to_string(id));
            const HWND english = program.openDialog(id);
            const HWND translated = library.openDialog(id);
            ASSERT_NE(translated, nullptr);
            EXPECT_EQ(describeControls(translated), describeControls(english));
            EXPECT_TRUE(isInCodePage(windowText(translated)));
            for (const HWND control : controlsOf(translated)) {
                EXPECT_TRUE(isInCodePage(windowText(control))) << narrow(windowText(control));
                EXPECT_EQ(windowText(control).empty(), windowText(GetDlgItem(english, GetDlgCtrlID(control))).empty());
            }
            DestroyWindow(english);
            DestroyWindow(translated);
        }
        for (const unsigned menu : {IDR_MAIN_MENU, IDR_TRAY_MENU})
            EXPECT_EQ(describeMenu(library, menu), describeMenu(program, menu)) << "menu " << menu;
        EXPECT_EQ(acceleratorsOf(library), acceleratorsOf(program));
        for (unsigned id = 1; id < 1000; ++id) {
            const std::wstring text = library.text(id);
            EXPECT_EQ(text.empty(), program.text(id).empty()) << "text " << id;
            EXPECT_EQ(skeletonOf(text), skeletonOf(program.text(id))) << "text " << id;
            EXPECT_TRUE(isInCodePage(text)) << "text " << id << ": " << narrow(text);
        }
    }
}

class LanguageTest : public ConsoleTest {
  protected:
    // The console in a folder of its own. A library copied there under the user's language is the one it looks for.
    void SetUp() override {
        ConsoleTest::SetUp();
        folder_ = makeFolderWithConsole();
        ASSERT_TRUE(
            CopyFileA((binFolder() + "\\KSPassThru.dll").c_str(), (folder_ + "\\KSPassThru.dll").c_str(), FALSE));
    }
    std::string nameFor(unsigned language) const {
        char name[64] = "";
        wsprintfA(name, "\\ORVSConfig%04x.dll", language);
        return folder_ + name;
    }
    void copyLibrary(const std::string& library, unsigned language) {
        ASSERT_TRUE(CopyFileA((binFolder() + "\\" + library).c_str(), nameFor(language).c_str(), FALSE)) << library;
    }
    std::string titleOfLogon() {
        startConsole({}, folder_);
        return ConsoleDriver::textOf(console_.logonDialog());
    }

    std::string folder_;
    const unsigned own_ = GetUserDefaultLangID();
    const unsigned lowByte_ = own_ & 255;
};

TEST_F(LanguageTest, TheWholeLanguagesLibraryComesBeforeItsLowBytes) {
    copyLibrary("ORVSConfig000c.dll", own_);
    copyLibrary("ORVSConfig0007.dll", lowByte_);
    EXPECT_EQ(titleOfLogon(), "Connexion requise");
}

TEST_F(LanguageTest, WhatCannotBeUsedIsPassedOverAndTold) {
    HANDLE damaged = CreateFileA(nameFor(own_).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(damaged, INVALID_HANDLE_VALUE);
    DWORD written = 0;
    WriteFile(damaged, "MZ, and nothing after it", 24, &written, nullptr);
    CloseHandle(damaged);
    copyLibrary("other_version.dll", lowByte_);
    EXPECT_EQ(titleOfLogon(), "Logon Required");
    EXPECT_EQ(ConsoleDriver::textOf(console_.logonDialog(), IDC_LOGON_OPTIONS), "Options >>");
    const auto lines = logLines();
    const auto told = [&](unsigned language, const std::string& reason) {
        return std::ranges::count_if(lines, [&](const std::string& line) {
            return line.starts_with("Language library '" + nameFor(language) + "' is not used: " + reason);
        });
    };
    EXPECT_EQ(told(own_, "it cannot be loaded (error "), 1);
    EXPECT_EQ(told(lowByte_, "its version is 0.9.0.0, not 1.0.0.0"), 1);
}

TEST_F(LanguageTest, HostilePlaceholdersAreShownAndNotFollowed) {
    copyLibrary("hostile_language.dll", lowByte_);
    startConsole({}, folder_);
    // What the library lacks comes from the program.
    EXPECT_EQ(ConsoleDriver::textOf(console_.logonDialog()), "Logon Required");
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_EQ(ConsoleDriver::textOf(console_.mainWindow()), "admin%s%n%x%999999d%");
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
