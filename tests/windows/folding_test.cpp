// Texts without regard to case and accents, in several code pages.
#include "win32/folding.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace orvc::win32 {
namespace {

TEST(FoldingTest, LettersLoseCaseAndAccentsAndBecomePlainOnes) {
    const struct {
        const wchar_t* text;
        const wchar_t* folded;
    } cases[] = {
        {L"", L""},
        {L"East Door 7", L"east door 7"},
        {L"\u00C9\u00E8\u00EA\u00EB\u00C7\u00F1\u00FC\u0160\u017D\u010D", L"eeeecnuszc"},
        {L"e\u0301 A\u030A", L"e a"},
        {L"Stra\u00DFe STRASSE \u1E9E", L"strasse strasse ss"},
        {L"\u00C6\u00E6 \u0152\u0153 \u00D8\u00F8", L"aeae oeoe oo"},
        {L"\u0141\u00F3d\u017A \u0110\u0111 \u00DE\u00F0", L"lodz dd thd"},
        {L"\u0130\u0131I", L"iii"},
        {L"\u0391\u03AC\u03A3\u03C2", L"\u03B1\u03B1\u03C3\u03C3"},
        {L"\u0416\u0419\u0451", L"\u0436\u0438\u0435"},
        {L"l\u2019\u00E9t\u00E9\u00A01", L"l'ete 1"},
        {L"\u304C", L"\u304B\u3099"},
        {L"\U0001F514\u4E2D", L"\U0001F514\u4E2D"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(foldWide(each.text), each.folded) << each.folded;
}

TEST(FoldingTest, EveryCodePageAndAnyBytesAreFolded) {
    const struct {
        unsigned codePage;
        const char* text;
        const char* folded;
    } cases[] = {
        {1252, "T\xDCR, \xC9t\xE9 \xDF\xC6\xD8", "tur, ete ssaeo"},
        {1250, "\xA3\xF3\x9F", "loz"},
        {1251, "\xC6\xE9", "\xD0\xB6\xD0\xB8"},
        {932, "Door \x93\x8C", "door \xE6\x9D\xB1"},
        {CP_UTF8, "T\xC3\x9CR", "tur"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(makeTextFolder(each.codePage)(each.text), each.folded) << each.codePage;

    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    for (const unsigned codePage : {0u, 1252u, 932u, unsigned{CP_UTF8}}) {
        const auto fold = makeTextFolder(codePage);
        EXPECT_EQ(fold(bytes).substr(0, 67), fold(bytes.substr(0, 67))) << codePage;
        EXPECT_EQ(fold(bytes.substr('A', 26)), "abcdefghijklmnopqrstuvwxyz") << codePage;
        EXPECT_EQ(fold(""), "");
    }
}

}  // namespace
}  // namespace orvc::win32
