// The language libraries hold what the program holds, in their own words; and the program takes the right one.
#include <algorithm>
#include <fstream>
#include <regex>
#include <set>

#include "windows/resource_files.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

// The console carries texts as 8-bit ones: what the code page of Western Europe lacks would become a question mark.
bool isInCodePage(const std::wstring& text) {
    BOOL lost = FALSE;
    WideCharToMultiByte(1252, WC_NO_BEST_FIT_CHARS, text.c_str(), -1, nullptr, 0, nullptr, &lost);
    return lost == FALSE;
}

// What a text must share with the English one: its placeholders in their order, a file filter's patterns and bars, the
// lines' number, and whether a letter is underlined.
std::vector<std::wstring> skeletonOf(const std::wstring& text) {
    static const std::wregex part(LR"(%\d*[a-zA-Z]|%|\|[^|]*\*[^|]*\||\||\n|&)");
    return {std::wsregex_token_iterator(text.begin(), text.end(), part), {}};
}

// A line per window of a dialog: all but its text and its place, and whether a letter is underlined.
std::string describeDialog(HWND dialog) {
    LOGFONTA font{};
    GetObjectA(reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0)), sizeof font, &font);
    std::string described = font.lfFaceName + std::to_string(font.lfHeight);
    std::vector<HWND> windows = controlsOf(dialog);
    windows.push_back(dialog);
    for (const HWND window : windows) {
        char line[200] = "";
        wsprintfA(line, "\n%ld %s %08lx %08lx", window == dialog ? 0 : GetDlgCtrlID(window), classOf(window).c_str(),
                  GetWindowLongA(window, GWL_STYLE), GetWindowLongA(window, GWL_EXSTYLE));
        described.append(line).append(windowText(window).empty() ? "" : " with a text");
        described.append(underlinedLetter(windowText(window)) != 0 ? " &" : "");
    }
    return described;
}

// A line per item: its depth, its command (0 = a separator, -1 = a menu below it), whether a letter is underlined.
void describeMenu(HMENU menu, const std::string& depth, std::string& described) {
    std::set<wchar_t> letters;
    for (int item = 0; item < GetMenuItemCount(menu); ++item) {
        wchar_t text[200] = L"";
        GetMenuStringW(menu, static_cast<UINT>(item), text, 200, MF_BYPOSITION);
        EXPECT_TRUE(isInCodePage(text)) << testing::PrintToString(text);
        const wchar_t letter = underlinedLetter(text);
        EXPECT_TRUE(letter == 0 || letters.insert(letter).second)
            << "its letter is there twice: " << testing::PrintToString(text);
        described += depth + std::to_string(static_cast<int>(GetMenuItemID(menu, item)));
        described += letter != 0 ? " &\n" : "\n";
        describeMenu(GetSubMenu(menu, item), depth + "  ", described);
    }
}

std::string describeMenu(const ResourceFile& file, unsigned id) {
    std::string described;
    const HMENU menu = LoadMenuA(file.module(), MAKEINTRESOURCEA(id));
    describeMenu(menu, "", described);
    DestroyMenu(menu);
    return described;
}

TEST(LanguageLibraries, HoldEverythingThatTheProgramHolds) {
    const ResourceFile program(kResourceFiles[0]);
    ASSERT_TRUE(program.module() != nullptr);
    for (const char* name : {kResourceFiles[1], kResourceFiles[2]}) {
        SCOPED_TRACE(name);
        const ResourceFile library(name);
        ASSERT_TRUE(library.module() != nullptr);
        EXPECT_EQ(library.dialogs(), program.dialogs());
        for (const unsigned id : program.dialogs()) {
            SCOPED_TRACE("dialog " + std::to_string(id));
            const HWND english = program.openDialog(id);
            const HWND translated = library.openDialog(id);
            ASSERT_NE(translated, nullptr);
            EXPECT_EQ(describeDialog(translated), describeDialog(english));
            EXPECT_TRUE(isInCodePage(windowText(translated)));
            for (const HWND control : controlsOf(translated))
                EXPECT_TRUE(isInCodePage(windowText(control))) << testing::PrintToString(windowText(control));
            DestroyWindow(english);
            DestroyWindow(translated);
        }
        for (const unsigned menu : {IDR_MAIN_MENU, IDR_TRAY_MENU})
            EXPECT_EQ(describeMenu(library, menu), describeMenu(program, menu)) << "menu " << menu;
        for (unsigned id = 1; id < 1000; ++id) {
            const std::wstring text = library.text(id);
            EXPECT_EQ(text.empty(), program.text(id).empty()) << "text " << id;
            EXPECT_EQ(skeletonOf(text), skeletonOf(program.text(id))) << "text " << id;
            EXPECT_TRUE(isInCodePage(text)) << "text " << id;
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

TEST_F(LanguageTest, WhatCannotBeUsedIsPassedOverAndTold) {
    std::ofstream(nameFor(own_)) << "MZ, and nothing after it";
    copyLibrary("other_revision.dll", lowByte_);
    EXPECT_EQ(titleOfLogon(), "Logon Required");
    EXPECT_EQ(ConsoleDriver::textOf(console_.logonDialog(), IDC_LOGON_OPTIONS), "Options >>");
    const std::pair<unsigned, const char*> reasons[] = {{own_, "it cannot be loaded (error "},
                                                        {lowByte_, "its resource revision is 1, not "}};
    for (const auto& [language, reason] : reasons)
        EXPECT_EQ(std::ranges::count_if(logLines(),
                                        [&](const std::string& line) {
                                            return line.starts_with("loadLanguage: Language library '" +
                                                                    nameFor(language) + "' is not used: " + reason);
                                        }),
                  1)
            << reason;
}

TEST_F(LanguageTest, HostilePlaceholdersAreShownAndNotFollowed) {
    copyLibrary("hostile_language.dll", lowByte_);
    // What the library lacks comes from the program.
    EXPECT_EQ(titleOfLogon(), "Logon Required");
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_EQ(ConsoleDriver::textOf(console_.mainWindow()), "admin%s%n%x%999999d%");
    exitConsole();
}

}  // namespace
}  // namespace orvc::test
