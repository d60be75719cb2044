// The folders that the console works out at start-up.
#pragma once

#include <string>
#include <vector>

namespace orvc {

// What the console asks of the file system outside the log. User-interface thread.
class FileSystem {
  public:
    virtual ~FileSystem() = default;
    // Names of the plain files in `folder` (with a trailing backslash), sub-folders passed over.
    virtual std::vector<std::string> listFiles(const std::string& folder) const = 0;
    virtual bool deleteFile(const std::string& path) = 0;
    // Removes an empty folder, makes one; false when the system refuses.
    virtual bool removeFolder(const std::string& path) = 0;
    virtual bool makeFolder(const std::string& path) = 0;
    virtual bool folderExists(const std::string& path) const = 0;
    // True when the file can be opened for reading.
    virtual bool canRead(const std::string& path) const = 0;
};

// The call-queue scratch folder below `temporaryFolder` (the environment's "temp"), with a trailing backslash.
std::string callQueueFolder(const std::string& temporaryFolder);

// Empties the scratch folder and makes it again. Returns false when there is no such folder afterwards; one that could
// not be removed but is still there will do.
bool prepareCallQueueFolder(FileSystem& files, const std::string& folder);

// The support folder below the user's application-data folder.
std::string supportFolder(const std::string& applicationData);

// `setting` without its trailing backslash, or `fallback` when it is empty.
std::string folderOr(const std::string& setting, const std::string& fallback);

}  // namespace orvc
