// What the demo server finds around it: its options, the user's folder, the call trace's file.
#pragma once

#include <filesystem>
#include <string_view>

#include "demo_server/core/options.h"

namespace orvc::demo {

// Reads the environment variable ORVC_DEMO as it is now.
Options readOptions();

// The file that the options name, else the one in the user's application data. Empty when there is no such folder.
std::filesystem::path installationPath(const Options& options);

// A path given in UTF-8.
std::filesystem::path pathFromUtf8(std::string_view text);

// Adds the line to the file, which is there for everybody to read when this returns. A file that cannot be written is
// passed over. Any thread.
void appendTraceLine(const std::filesystem::path& path, std::string_view line);

}  // namespace orvc::demo
