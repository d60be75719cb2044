// The installation's file on disk.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "demo_server/core/installation.h"

namespace orvc::demo {

struct InstallationLoad {
    std::optional<Installation> installation;  // nothing when there is no file, or no good one
    std::string problem;                       // what was wrong with the file, for the console's log; else empty
};

// Reads the file. A damaged one is renamed, with ".bad" behind its name, over an earlier such file. Throws nothing but
// std::bad_alloc.
InstallationLoad loadInstallationFile(const std::filesystem::path& path);

// Makes the folders that are missing, writes a file beside the real one and renames it into place, so that the file is
// always whole. False when the disk refuses; the file is then as it was.
bool saveInstallationFile(const std::filesystem::path& path, std::string_view text);

}  // namespace orvc::demo
