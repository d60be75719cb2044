// How a text is written into an Event's payload file so that XML and line-oriented tools leave it alone.
#pragma once

#include <string>
#include <string_view>

namespace orvc {

// `text` as element content: control characters as '%' and two lower-case hexadecimal digits, "%" doubled, "&", "<" and
// ">" as entities, everything else as it stands. A byte from 0x80 to 0xFF becomes "%ff" whatever it was: this loss
// belongs to the format.
std::string encodeEventText(std::string_view text);

// As encodeEventText(), at the end of `result`.
void appendEncodedEventText(std::string_view text, std::string& result);

// The text that `content` stands for. "%" takes any two characters that follow as digits: letters beyond "f" count 0,
// other characters their distance from "0". What is no escape is copied, an incomplete one at the end too.
std::string decodeEventText(std::string_view content);

}  // namespace orvc
