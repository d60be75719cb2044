// The form of texts in which they are searched.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace orvc {

// Makes a text in which neither case nor accents matter: two texts that a person takes for the same one fold alike.
// Takes any bytes. What it gives is only ever compared with what it gave before, never shown.
using TextFolder = std::function<std::string(std::string_view text)>;

// One for ASCII, which leaves other bytes as they are.
inline std::string foldAscii(std::string_view text) {
    std::string folded(text);
    std::ranges::transform(folded, folded.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return folded;
}

}  // namespace orvc
