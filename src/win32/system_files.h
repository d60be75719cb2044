// Files and folders as Windows has them.
#pragma once

#include <string>

#include "support/folders.h"

namespace orvc::win32 {

class SystemFiles final : public FileSystem {
  public:
    std::vector<std::string> listFiles(const std::string& folder) const override;
    bool deleteFile(const std::string& path) override;
    bool removeFolder(const std::string& path) override;
    bool makeFolder(const std::string& path) override;
    bool folderExists(const std::string& path) const override;
    bool canRead(const std::string& path) const override;
};

// Full path of the running program, and its folder without a trailing backslash.
std::string programPath();
std::string programFolder();
// Windows' system folder.
std::string systemFolder();
// The current user's application-data folder; empty when Windows has none.
std::string applicationDataFolder();
// Value of an environment variable; empty when there is none.
std::string environmentValue(const char* name);

// The file version text of a program or library, from its version resource; empty when it has none.
std::string fileVersionText(const std::string& path);
// The four numbers of its file version, as "1.0.0.0"; empty when it has none. They are there in every language's block.
std::string fileVersionNumbers(const std::string& path);

}  // namespace orvc::win32
