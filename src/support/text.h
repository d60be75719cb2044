// Helpers for 8-bit texts, which the console carries unchanged in whatever code page the server wrote them.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

#if defined(__GNUC__) && defined(_WIN32)
#define ORVC_PRINTF(formatIndex, argumentIndex) __attribute__((format(gnu_printf, formatIndex, argumentIndex)))
#elif defined(__GNUC__)
#define ORVC_PRINTF(formatIndex, argumentIndex) __attribute__((format(printf, formatIndex, argumentIndex)))
#else
#define ORVC_PRINTF(formatIndex, argumentIndex)
#endif

namespace orvc {

// printf into a string of whatever length the result needs. The format is a literal: for formats that come from a
// string table use fillIn().
std::string formatText(const char* format, ...) ORVC_PRINTF(1, 2);

// An argument of fillIn().
using FillValue = std::variant<std::string_view, long>;

// Fills `values` into the "%s", "%d" and "%x" placeholders of a format that comes from a resource, in order; "%%" gives
// a percent sign. Flags and widths are those of "%d", "%02d" and the like. A placeholder without a value is left as it
// stands, a surplus value is dropped and a value of another type is written in its own way, so that no language
// library can make the console read past its arguments.
std::string fillIn(std::string_view format, std::initializer_list<FillValue> values);

// `text` without one trailing backslash, if it has one.
std::string withoutTrailingBackslash(std::string text);

// A copy of `text` ended at its first zero byte, as the library's texts are.
inline std::string_view untilZero(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

}  // namespace orvc
