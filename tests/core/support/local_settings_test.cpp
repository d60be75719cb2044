#include "support/local_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/folders.h"

namespace orvc {
namespace {

using ::testing::ElementsAre;

// Keeps what is written, and refuses one write in so many.
struct FakeStore final : SettingsStore {
    std::optional<std::uint32_t> readInteger(const char*, const char*) const override { return std::nullopt; }
    std::optional<std::string> readText(const char*, const char*) const override { return std::nullopt; }
    bool writeInteger(const char* section, const char* name, std::uint32_t) override { return write(section, name); }
    bool writeText(const char* section, const char* name, const std::string&) override { return write(section, name); }
    bool write(const std::string& section, const std::string& name) {
        EXPECT_EQ(section, "settings");
        written.push_back(name);
        return written.size() != refused;
    }
    std::vector<std::string> written;
    std::size_t refused = 0;
};

TEST(LocalSettingsTest, AreWrittenInOrderAndARefusedOneDoesNotKeepBackTheRest) {
    for (std::size_t refused = 0; refused <= 13; ++refused) {
        FakeStore store;
        store.refused = refused;
        EXPECT_EQ(saveSettings(store, LocalSettings(), StartMode::kConsole), refused == 0);
        EXPECT_THAT(store.written, ElementsAre("startWidth", "startHeight", "hideMinimized", "pathConsoleInstall",
                                               "IPAddress", "IPPort", "recordEvents", "UserName", "UserPassword",
                                               "AdapterName", "ListColumns", "ListSort", "ListDetail"));
    }
    FakeStore store;
    saveSettings(store, LocalSettings(), StartMode::kStandalone);
    EXPECT_EQ(store.written[3], "pathStandaloneInstall");
}

// A disk with one folder, in which calls fail by name.
struct FakeDisk final : FileSystem {
    std::vector<std::string> listFiles(const std::string&) const override { return {files.begin(), files.end()}; }
    bool deleteFile(const std::string& path) override {
        return !fails.contains("delete") && files.erase(path.substr(path.rfind('\\') + 1)) != 0;
    }
    bool removeFolder(const std::string&) override {
        return files.empty() && !fails.contains("remove") && std::exchange(isThere, false);
    }
    bool makeFolder(const std::string&) override { return !fails.contains("make") && !std::exchange(isThere, true); }
    bool folderExists(const std::string&) const override { return isThere; }
    bool canRead(const std::string&) const override { return false; }

    std::set<std::string> files{"a.wav", "b"};
    std::set<std::string> fails;
    bool isThere = true;
};

TEST(CallQueueFolderTest, IsEmptiedAndMadeAnewAndCountsWhenItIsThereInTheEnd) {
    const struct {
        std::set<std::string> fails;
        bool ready;
        std::size_t left;
    } cases[] = {{{}, true, 0}, {{"delete"}, true, 2}, {{"remove"}, true, 0}, {{"make"}, false, 0}};
    for (const auto& each : cases) {
        FakeDisk disk;
        disk.fails = each.fails;
        EXPECT_EQ(prepareCallQueueFolder(disk, callQueueFolder("C:\\Temp\\")), each.ready);
        EXPECT_EQ(disk.files.size(), each.left);
    }
    EXPECT_EQ(callQueueFolder("C:\\Temp\\"), "C:\\Temp\\CallQueue\\");
}

}  // namespace
}  // namespace orvc
