#include "support/folders.h"

#include <gtest/gtest.h>

#include "fake_file_system.h"

namespace orvc {
namespace {

TEST(Folders, NamesAreBuiltWhetherOrNotTheSystemsEndInABackslash) {
    EXPECT_EQ(callQueueFolder("C:\\Temp"), "C:\\Temp\\CallQueue\\");
    EXPECT_EQ(callQueueFolder("C:\\Temp\\"), "C:\\Temp\\CallQueue\\");
    EXPECT_EQ(supportFolder("C:\\Data\\"), "C:\\Data\\Kestrel Sonics");
    EXPECT_EQ(folderOr("", "C:\\Program\\"), "C:\\Program");
    EXPECT_EQ(folderOr("D:\\Console\\", "C:\\Program"), "D:\\Console");
}

TEST(Folders, TheScratchFolderIsEmptiedAndUsableWheneverItIsThereAfterwards) {
    struct {
        std::set<std::string> folders, locked;
        bool canMakeFolders, usable;
        std::size_t filesLeft;
    } const rows[] = {{{}, {}, true, true, 0},
                      {{"T:\\Q"}, {}, true, true, 0},
                      {{"T:\\Q"}, {"T:\\Q\\a.wav"}, true, true, 1},
                      {{"T:\\Q"}, {"T:\\Q"}, true, true, 0},
                      {{}, {}, false, false, 0}};
    for (const auto& row : rows) {
        FakeFileSystem files;
        files.folders = row.folders;
        files.locked = row.locked;
        files.canMakeFolders = row.canMakeFolders;
        if (!row.folders.empty()) files.files = {"T:\\Q\\a.wav", "T:\\Q\\b.wav"};
        EXPECT_EQ(prepareCallQueueFolder(files, "T:\\Q\\"), row.usable);
        EXPECT_EQ(files.files.size(), row.filesLeft);
        EXPECT_EQ(files.folderExists("T:\\Q"), row.usable);
    }
}

}  // namespace
}  // namespace orvc
