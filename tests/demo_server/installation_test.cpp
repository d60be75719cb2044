// The installation as a text and as a file.
#include <gtest/gtest.h>

#include <filesystem>

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

TEST(InstallationFile, IsReplacedWholeAndSetAsideWhenDamaged) {
    const fs::path folder = fs::temp_directory_path() / guidText(randomGuid());
    const fs::path path = folder / "made as needed" / "installation.txt";
    const std::string text = formatInstallation(makeBuiltInBuilding(1'700'000'000));
    ASSERT_TRUE(saveInstallationFile(path, "old") && saveInstallationFile(path, text));
    const InstallationLoad load = loadInstallationFile(path);
    ASSERT_TRUE(load.installation) << load.problem;
    EXPECT_EQ(formatInstallation(*load.installation), text);
    ASSERT_TRUE(saveInstallationFile(path, text.substr(0, text.size() / 2)));
    EXPECT_FALSE(loadInstallationFile(path).installation);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(fs::file_size(path.string() + ".bad"), text.size() / 2);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace orvc::demo
