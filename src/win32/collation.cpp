#include "win32/collation.h"

#include <windows.h>

#include <array>

namespace orvc::win32 {

std::string makeSortKey(std::string_view name) {
    if (name.empty()) return {};
    constexpr DWORD kFlags = LCMAP_SORTKEY | NORM_IGNORECASE;
    const auto length = static_cast<int>(name.size());
    std::array<char, 512> buffer;
    int size =
        LCMapStringA(LOCALE_USER_DEFAULT, kFlags, name.data(), length, buffer.data(), static_cast<int>(buffer.size()));
    if (size > 0) return {buffer.data(), static_cast<std::size_t>(size)};
    size = LCMapStringA(LOCALE_USER_DEFAULT, kFlags, name.data(), length, nullptr, 0);
    std::string key(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
    if (size > 0) LCMapStringA(LOCALE_USER_DEFAULT, kFlags, name.data(), length, key.data(), size);
    return key;
}

}  // namespace orvc::win32
