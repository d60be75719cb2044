#include "support/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdarg>
#include <cstdio>

namespace orvc {

std::string formatText(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

namespace {

// A placeholder at the start of `format`: its length with the percent sign and its conversion letter, or length 0.
struct Placeholder {
    std::size_t length = 0;
    char conversion = 0;
    bool zeroPadded = false;
    int width = 0;
};

Placeholder readPlaceholder(std::string_view format) {
    Placeholder found;
    std::size_t at = 1;
    if (at < format.size() && format[at] == '0') found.zeroPadded = true;
    // Two digits of width are more than any label needs; a longer run is no placeholder of ours.
    const std::size_t lastDigit = at + 3;
    while (at < format.size() && at < lastDigit && format[at] >= '0' && format[at] <= '9')
        found.width = found.width * 10 + (format[at++] - '0');
    if (at < format.size() && std::string_view("sduxX%").find(format[at]) != std::string_view::npos) {
        found.conversion = format[at];
        found.length = at + 1;
    }
    return found;
}

std::string formatValue(const Placeholder& placeholder, const FillValue& value) {
    if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
    const long number = std::get<long>(value);
    // Not printf: lists are filled with ten thousands of these, and the one of Windows' C library is slow.
    const bool isHex = placeholder.conversion == 'x' || placeholder.conversion == 'X';
    std::array<char, 24> digits;
    char* const begin = digits.data();
    char* const end = isHex ? std::to_chars(begin, begin + digits.size(), static_cast<unsigned long>(number), 16).ptr
                            : std::to_chars(begin, begin + digits.size(), number).ptr;
    if (placeholder.conversion == 'X')
        std::transform(begin, end, begin, [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    const std::size_t sign = *begin == '-' ? 1 : 0;
    std::string text(begin, end);
    const auto width = static_cast<std::size_t>(placeholder.width);
    if (text.size() < width)
        text.insert(placeholder.zeroPadded ? sign : 0, width - text.size(), placeholder.zeroPadded ? '0' : ' ');
    return text;
}

}  // namespace

std::string fillIn(std::string_view format, std::initializer_list<FillValue> values) {
    std::string text;
    const auto* value = values.begin();
    for (std::size_t at = 0; at < format.size();) {
        const Placeholder placeholder = format[at] == '%' ? readPlaceholder(format.substr(at)) : Placeholder{};
        if (placeholder.conversion == '%') {
            text += '%';
        } else if (placeholder.length != 0 && value != values.end()) {
            text += formatValue(placeholder, *value++);
        } else {
            text += format.substr(at, placeholder.length ? placeholder.length : 1);
        }
        at += placeholder.length ? placeholder.length : 1;
    }
    return text;
}

std::string withoutTrailingBackslash(std::string text) {
    if (!text.empty() && text.back() == '\\') text.pop_back();
    return text;
}

}  // namespace orvc
