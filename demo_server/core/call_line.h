// One call of the console as a line of the call trace:
//
//   KSSysVarSetValue \ORVS\Events\{...}\EventName 0xC0000001 "Front door" 10
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "demo_server/core/guid.h"

namespace orvc::demo {

// Puts the line together, argument by argument. Bytes that are not printable are written as a percent sign and two
// digits, as is the percent sign, and in quoted texts the double quote.
class CallLine {
  public:
    explicit CallLine(std::string_view call) : text_(call) {}

    CallLine& name(const char* text);    // a path or a name; null is written as null
    CallLine& quoted(const char* text);  // a text argument; null is written as null
    CallLine& quoted(std::string_view bytes);
    CallLine& hex(std::uint32_t word);  // 0xC0000001
    CallLine& number(std::uint32_t word);
    CallLine& guid(const KSGuid& guid);
    CallLine& address(const KSSocketAddress* address);  // 127.0.0.1:4000

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

}  // namespace orvc::demo
