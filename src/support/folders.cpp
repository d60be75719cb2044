#include "support/folders.h"

#include "support/text.h"

namespace orvc {

std::string callQueueFolder(const std::string& temporaryFolder) {
    return withoutTrailingBackslash(temporaryFolder) + "\\CallQueue\\";
}

bool prepareCallQueueFolder(FileSystem& files, const std::string& folder) {
    for (const std::string& name : files.listFiles(folder))
        files.deleteFile(folder + name);
    const std::string path = withoutTrailingBackslash(folder);
    files.removeFolder(path);
    return files.makeFolder(path) || files.folderExists(path);
}

std::string supportFolder(const std::string& applicationData) {
    return withoutTrailingBackslash(applicationData) + "\\Kestrel Sonics";
}

std::string folderOr(const std::string& setting, const std::string& fallback) {
    return withoutTrailingBackslash(setting.empty() ? fallback : setting);
}

}  // namespace orvc
