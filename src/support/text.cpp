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

void appendValue(std::string& text, const Placeholder& placeholder, const FillValue& value) {
    if (const auto* words = std::get_if<std::string_view>(&value)) {
        text += *words;
        return;
    }
    const long number = std::get<long>(value);
    // Not printf: lists are filled with ten thousands of these, and the one of Windows' C library is slow.
    const bool isHex = placeholder.conversion == 'x' || placeholder.conversion == 'X';
    std::array<char, 24> digits;
    char* const begin = digits.data();
    char* const end = isHex ? std::to_chars(begin, begin + digits.size(), static_cast<unsigned long>(number), 16).ptr
                            : std::to_chars(begin, begin + digits.size(), number).ptr;
    if (placeholder.conversion == 'X')
        std::transform(begin, end, begin, [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    const std::string_view shown(begin, static_cast<std::size_t>(end - begin));
    const std::size_t sign = placeholder.zeroPadded && shown.front() == '-' ? 1 : 0;
    const auto width = static_cast<std::size_t>(placeholder.width);
    text += shown.substr(0, sign);
    if (shown.size() < width) text.append(width - shown.size(), placeholder.zeroPadded ? '0' : ' ');
    text += shown.substr(sign);
}

std::size_t lengthOf(const FillValue& value) {
    constexpr std::size_t kUsualNumber = 6;
    const auto* words = std::get_if<std::string_view>(&value);
    return words != nullptr ? words->size() : kUsualNumber;
}

}  // namespace

std::string fillIn(std::string_view format, std::initializer_list<FillValue> values) {
    std::string text;
    std::size_t length = format.size();
    for (const FillValue& value : values)
        length += lengthOf(value);
    text.reserve(length);
    const auto* value = values.begin();
    for (std::size_t at = 0; at < format.size();) {
        const Placeholder placeholder = format[at] == '%' ? readPlaceholder(format.substr(at)) : Placeholder{};
        if (placeholder.conversion == '%') {
            text += '%';
        } else if (placeholder.length != 0 && value != values.end()) {
            appendValue(text, placeholder, *value++);
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
