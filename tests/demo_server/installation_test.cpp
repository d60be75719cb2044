// The installation as a text and as a file.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "demo_server/core/built_in_building.h"
#include "demo_server/core/installation_file.h"
#include "demo_server/core/installation_text.h"

namespace orvc::demo {
namespace {

namespace fs = std::filesystem;

std::string everyByte() {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

TEST(InstallationText, KeepsEveryByte) {
    Installation installation;
    const std::string awkward[] = {"", " ", "a = b", "%41", "# no comment", everyByte()};
    int number = 0;
    for (const std::string& text : awkward) {
        installation.users.push_back({text, text, number % 2 == 0});
        installation.devices.push_back({{2, 0, 0, 0, 0, static_cast<std::uint8_t>(number)}, text});
        installation.groups.push_back({static_cast<std::uint32_t>(number), text, {{1, 2, 3, 4, 5, 6}}});
        installation.messages.push_back({text, text});
        installation.queues.push_back({4294967295, true, 2, number % 2 == 0, text});
        installation.variables.setString(text, text);
        installation.variables.setDword("\\ORVS\\" + text + "\\number", 4294967295);
        installation.variables.createKey("\\ORVS\\" + text);
        installation.storeFile(numberedGuid(9, static_cast<std::uint32_t>(number++)), text);
    }
    const std::string text = formatInstallation(installation);
    const InstallationParse parse = parseInstallation(text);
    ASSERT_TRUE(parse.installation) << parse.problem;
    EXPECT_EQ(formatInstallation(*parse.installation), text);
    EXPECT_EQ(parse.installation->users.back().password, everyByte());
    EXPECT_EQ(*parse.installation->files.at(numberedGuid(9, 5)), everyByte());
    EXPECT_EQ(parse.installation->variables.find(everyByte())->text, everyByte());
    for (const char byte : text)
        ASSERT_TRUE(byte == '\n' || (byte >= 0x20 && byte < 0x7F));
}

TEST(InstallationText, RefusesACutText) {
    const std::string good = formatInstallation(makeBuiltInBuilding(1'700'000'000));
    ASSERT_TRUE(parseInstallation(good).installation);
    for (std::size_t length = 0; length + 4 < good.size(); length += 97) {
        EXPECT_FALSE(parseInstallation(good.substr(0, length)).installation) << "cut at " << length;
    }
}

class InstallationFile : public ::testing::Test {
  protected:
    void SetUp() override { fs::create_directories(folder_); }
    void TearDown() override { fs::remove_all(folder_); }

    const fs::path folder_ = fs::temp_directory_path() / guidText(randomGuid());
    const fs::path path_ = folder_ / "installation.txt";
};

TEST_F(InstallationFile, IsReplacedWholeAndLeavesNothingBeside) {
    const fs::path deeper = folder_ / "made as needed" / "installation.txt";
    const std::string text = formatInstallation(makeBuiltInBuilding(1'700'000'000));
    ASSERT_TRUE(saveInstallationFile(deeper, "old"));
    ASSERT_TRUE(saveInstallationFile(deeper, text));
    const InstallationLoad load = loadInstallationFile(deeper);
    ASSERT_TRUE(load.installation) << load.problem;
    EXPECT_EQ(formatInstallation(*load.installation), text);
    EXPECT_EQ(std::distance(fs::directory_iterator(deeper.parent_path()), fs::directory_iterator()), 1);
}

TEST_F(InstallationFile, IsSetAsideWhenDamaged) {
    for (const char* damaged : {"demo-server-installation 1\nstring", "something else"}) {
        std::ofstream(path_, std::ios::binary) << damaged;
        const InstallationLoad load = loadInstallationFile(path_);
        EXPECT_FALSE(load.installation);
        EXPECT_NE(load.problem, "");
        EXPECT_FALSE(fs::exists(path_));
        std::ifstream bad(path_.string() + ".bad", std::ios::binary);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(bad), {}), damaged);
    }
}

}  // namespace
}  // namespace orvc::demo
