#include "support/language.h"

#include <gtest/gtest.h>

#include "fake_file_system.h"

namespace orvc {
namespace {

TEST(Language, TheFirstCandidateThatIsThereIsTaken) {
    struct {
        std::uint16_t user, system;
        std::set<std::uint16_t> present;
        std::optional<std::uint16_t> chosen;
    } const rows[] = {
        {0x0c0c, 0x0407, {0x000c, 0x0407}, 0x000c},  // the low byte of the user's comes before the system's
        {0x0c0c, 0x0407, {0x0c0c, 0x000c}, 0x0c0c}, {0x0c0c, 0x0407, {0x0407, 0x0007}, 0x0407},
        {0x0c0c, 0x0407, {0x0007}, 0x0007},         {0x04ff, 0x0407, {0x00ff}, 0x00ff},
        {0x06aa, 0x06aa, {0x02aa}, std::nullopt}};  // eight bits, not the ten of a primary language
    for (const auto& row : rows) {
        const LanguageCandidates candidates = languageCandidates(row.user, row.system);
        const auto isPresent = [&](std::uint16_t language) { return row.present.contains(language); };
        EXPECT_EQ(chooseLanguage(candidates, isPresent), row.chosen);

        FakeFileSystem files;
        for (const std::uint16_t language : row.present)
            files.files.insert("C:\\Console\\HelpFile" + languageLibraryName(language).substr(10, 4) + ".chm");
        const HelpFile help = chooseHelpFile(files, "C:\\Console", candidates);
        EXPECT_EQ(help.language, row.chosen);
        EXPECT_EQ(files.canRead(help.path), row.chosen.has_value());
        EXPECT_EQ(help.path == "C:\\Console\\HelpFile.chm", !row.chosen);
    }
    EXPECT_EQ(languageLibraryName(0x0C0C), "ORVSConfig0c0c.dll");
}

}  // namespace
}  // namespace orvc
