#include "win32/folding.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace orvc::win32 {
namespace {

// Blocks of marks that stand above, below or in a letter, by their first and last one.
constexpr std::array kMarks{std::pair{L'\u0300', L'\u036F'}, std::pair{L'\u1AB0', L'\u1AFF'},
                            std::pair{L'\u1DC0', L'\u1DFF'}, std::pair{L'\u20D0', L'\u20FF'},
                            std::pair{L'\uFE20', L'\uFE2F'}};

bool isMark(wchar_t c) {
    return std::ranges::any_of(kMarks, [&](const auto& block) { return c >= block.first && c <= block.second; });
}

// Letters that are not a plain one with a mark, in lower case, and what people type who do not have them.
struct Plain {
    wchar_t letter;
    const wchar_t* typed;
};
constexpr std::array kPlain{
    Plain{L'\u00A0', L" "},  Plain{L'\u00DF', L"ss"}, Plain{L'\u00E6', L"ae"}, Plain{L'\u00F0', L"d"},
    Plain{L'\u00F8', L"o"},  Plain{L'\u00FE', L"th"}, Plain{L'\u0111', L"d"},  Plain{L'\u0127', L"h"},
    Plain{L'\u0131', L"i"},  Plain{L'\u0133', L"ij"}, Plain{L'\u0138', L"k"},  Plain{L'\u0140', L"l"},
    Plain{L'\u0142', L"l"},  Plain{L'\u0149', L"n"},  Plain{L'\u014B', L"n"},  Plain{L'\u0153', L"oe"},
    Plain{L'\u0167', L"t"},  Plain{L'\u017F', L"s"},  Plain{L'\u0192', L"f"},  Plain{L'\u03C2', L"\u03C3"},
    Plain{L'\u1E9E', L"ss"}, Plain{L'\u2019', L"'"},
};

int sizeOf(std::wstring_view text) {
    return static_cast<int>(text.size());
}

// What a function of the system makes of a text that it is given with its length and a buffer; the text itself when it
// fails.
template <typename Convert>
std::wstring converted(std::wstring_view text, const Convert& convert) {
    std::wstring result(static_cast<std::size_t>(std::max(convert(nullptr, 0), 0)), L'\0');
    if (result.empty() || convert(result.data(), sizeOf(result)) != sizeOf(result)) return std::wstring(text);
    return result;
}

std::wstring toWide(UINT codePage, std::string_view text) {
    const auto size = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(std::max(MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0), 0)), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), sizeOf(wide));
    return wide;
}

std::string toUtf8(std::wstring_view wide) {
    const auto convert = [&](char* to, int size) {
        return WideCharToMultiByte(CP_UTF8, 0, wide.data(), sizeOf(wide), to, size, nullptr, nullptr);
    };
    std::string text(static_cast<std::size_t>(std::max(convert(nullptr, 0), 0)), '\0');
    convert(text.data(), static_cast<int>(text.size()));
    return text;
}

// What each byte of a code page becomes that has no longer characters.
using ByteTable = std::array<std::string, 256>;

std::shared_ptr<const ByteTable> makeByteTable(UINT codePage) {
    const auto table = std::make_shared<ByteTable>();
    for (std::size_t byte = 0; byte < table->size(); ++byte)
        (*table)[byte] = toUtf8(foldWide(toWide(codePage, std::string(1, static_cast<char>(byte)))));
    return table;
}

}  // namespace

std::wstring foldWide(std::wstring_view text) {
    if (text.empty()) return {};
    const std::wstring parted = converted(
        text, [&](wchar_t* to, int size) { return FoldStringW(MAP_COMPOSITE, text.data(), sizeOf(text), to, size); });
    const std::wstring small = converted(parted, [&](wchar_t* to, int size) {
        return LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, parted.data(), sizeOf(parted), to, size);
    });
    std::wstring folded;
    folded.reserve(small.size());
    for (const wchar_t c : small) {
        if (isMark(c)) continue;
        const auto plain = std::ranges::find(kPlain, c, &Plain::letter);
        if (plain != kPlain.end())
            folded += plain->typed;
        else
            folded += c;
    }
    return folded;
}

std::function<std::string(std::string_view)> makeTextFolder(unsigned codePage) {
    CPINFO info{};
    if (GetCPInfo(codePage, &info) == FALSE || info.MaxCharSize != 1)
        return [codePage](std::string_view text) { return toUtf8(foldWide(toWide(codePage, text))); };
    return [table = makeByteTable(codePage)](std::string_view text) {
        std::string folded;
        folded.reserve(text.size() + text.size() / 8);
        for (const char c : text)
            folded += (*table)[static_cast<unsigned char>(c)];
        return folded;
    };
}

}  // namespace orvc::win32
