// How a text is written into an Event's payload file: without characters that mean something in XML, and on one line.
#pragma once

#include <string>
#include <string_view>

namespace orvc {

// `text` as element content. A control character becomes '%' and two lower-case hexadecimal digits, "%" is doubled, and
// "&", "<" and ">" become entities. Every byte from 0x80 to 0xFF becomes "%ff": the format loses them. Other characters
// stay as they are.
std::string encodeEventText(std::string_view text);

// Appends what encodeEventText() returns.
void appendEncodedEventText(std::string_view text, std::string& result);

// Decodes `content`. Any two characters after "%" count as digits: letters after "f" as 0, other characters as their
// distance from "0". Everything that is not an escape is copied, also an incomplete escape at the end.
std::string decodeEventText(std::string_view content);

}  // namespace orvc
