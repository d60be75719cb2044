// The installation as a text that people can read, search and edit: one item a line.
//
//   string \ORVS\Events\{...}\EventName = Front door
//   dword \ORVS\smtpPort = 587
//   file {...} = <?xml version="1.0" encoding="utf-8" ?>%0D%0A<ORVSEventFile>...
//
// Bytes that do not fit on a line of printable text are written as a percent sign and two digits; see the README for
// every kind of line.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "demo_server/core/installation.h"

namespace orvc::demo {

struct InstallationParse {
    std::optional<Installation> installation;  // nothing when the text is damaged
    std::string problem;                       // then: which line, and what is wrong with it
};

// parseInstallation(formatInstallation(x)) gives x back, byte for byte.
std::string formatInstallation(const Installation& installation);

// Accepts comments, blank lines and both line ends. A line that it cannot read, or a text that stops before its end
// line, makes the whole text damaged: half a building is worse than none.
InstallationParse parseInstallation(std::string_view text);

}  // namespace orvc::demo
