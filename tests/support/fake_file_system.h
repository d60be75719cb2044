// Files and folders in memory, some of which the system will not let go of.
#pragma once

#include <set>

#include "support/folders.h"

namespace orvc {

class FakeFileSystem final : public FileSystem {
  public:
    std::vector<std::string> listFiles(const std::string& folder) const override {
        std::vector<std::string> names;
        for (const std::string& path : files)
            if (path.starts_with(folder)) names.push_back(path.substr(folder.size()));
        return names;
    }
    bool deleteFile(const std::string& path) override { return !locked.contains(path) && files.erase(path) != 0; }
    bool removeFolder(const std::string& path) override {
        return !locked.contains(path) && listFiles(path + "\\").empty() && folders.erase(path) != 0;
    }
    bool makeFolder(const std::string& path) override { return canMakeFolders && folders.insert(path).second; }
    bool folderExists(const std::string& path) const override { return folders.contains(path); }
    bool canRead(const std::string& path) const override { return files.contains(path); }

    std::set<std::string> files, folders, locked;
    bool canMakeFolders = true;
};

}  // namespace orvc
