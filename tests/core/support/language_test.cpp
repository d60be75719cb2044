#include "support/language.h"

#include <gtest/gtest.h>

#include <set>

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
        const auto isPresent = [&](std::uint16_t language) { return row.present.contains(language); };
        EXPECT_EQ(chooseLanguage(languageCandidates(row.user, row.system), isPresent), row.chosen);
    }
}

}  // namespace
}  // namespace orvc
