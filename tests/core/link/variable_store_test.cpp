#include "link/variable_store.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "link/ks_types.h"

namespace orvc {
namespace {

using namespace variable_type;

// Claims the names that begin with its own text.
struct FakeOwner final : VariableOwner {
    FakeOwner(Journal& sharedJournal, std::string ownPrefix) : journal(sharedJournal), prefix(std::move(ownPrefix)) {}
    bool updateVariable(const Variable& variable) override {
        journal.add(prefix + ": " + std::string(variable.name) + "=" + std::string(variable.text.value_or("(none)")));
        return variable.name.starts_with(prefix);
    }
    Journal& journal;
    std::string prefix;
};

class VariableStoreTest : public ::testing::Test {
  protected:
    void update(std::string_view name, std::uint32_t type, std::optional<std::string_view> text,
                std::uint32_t number = 0) {
        store_.doSystemVariableUpdate({name, type, text, number});
    }
    // Text of the stored variable; its number when it has none; "-" when there is no such variable.
    std::string stored(std::string_view name, std::uint32_t type = kString) const {
        const StoredVariable* variable = store_.getSystemVariable(name, type);
        if (variable == nullptr) return "-";
        return variable->text() ? std::string(*variable->text()) : std::to_string(variable->number);
    }

    Journal journal_;
    JournalLog log_{journal_};
    VariableStore store_{log_.log};
};

TEST_F(VariableStoreTest, TextsOfAnyLengthReplaceOneAnotherUnderTheExactName) {
    const std::string name = "\\" + std::string(1'000, 'n');
    update(name + "n", kString, "neighbour");
    for (const std::string& text :
         {std::string("middling"), std::string("short"), std::string(), std::string(5'000, 'x'), std::string("s")}) {
        update(name, kString, text);
        EXPECT_EQ(stored(name), text);
    }
    update(name, kString, std::nullopt, 12);
    EXPECT_EQ(stored(name), "12") << "absent is not empty";
    EXPECT_EQ(stored(name + "n"), "neighbour");
}

TEST_F(VariableStoreTest, AnotherTypeUnderTheSameNameIsAVariableOfItsOwn) {
    update("\\a", kString, "text");
    update("\\a", kDword, std::nullopt, 5);
    EXPECT_EQ(journal_.take(), "log: getSystemVariable: Found a different type 0xc0000001 != 0xc0000004 (0xc0000004)");
    EXPECT_EQ(stored("\\a", kDword), "5");
    EXPECT_EQ(journal_.take(), "") << "the newer one is found first";
    EXPECT_EQ(stored("\\a", kString), "text");
}

TEST_F(VariableStoreTest, OwnersAreAskedInTurnUntilOneClaimsButNotAboutDeletions) {
    FakeOwner first(journal_, "\\1"), second(journal_, "\\2");
    store_.addOwner(first);
    store_.addOwner(second);
    store_.setAfterRouting([this] { journal_.add("routed"); });
    update("\\1x", kString, std::nullopt);
    update("\\2x", kString, "t");
    EXPECT_EQ(journal_.take(), "\\1: \\1x=(none); routed; \\1: \\2x=t; \\2: \\2x=t; routed");
    update("\\1never", kString | kDeleted, "t");
    EXPECT_EQ(store_.size(), 2u);
    EXPECT_EQ(journal_.take(), "");
}

TEST_F(VariableStoreTest, ManyVariablesAreFoundWhileTheTableGrowsAndAfterRemovals) {
    constexpr int kVariables = 200'000;
    const auto nameOf = [](int i) { return formatText("\\ORVS\\Events\\{%d}\\EventName", i); };
    const auto insert = [&](int i, std::uint32_t type) {
        update(nameOf(i), type, std::nullopt, static_cast<std::uint32_t>(i));
    };
    for (int i = 0; i < kVariables; ++i) {
        if (i % 97 == 0) update(nameOf(i), kString, "text");
        insert(i, kDword);
        const bool look = (i & (i - 1)) == 0 || i % 997 == 0;  // around the splits that double the table, and between
        for (int known = 0; look && known <= i; known += 1 + i / 50)
            ASSERT_EQ(stored(nameOf(known), kDword), std::to_string(known));
    }
    journal_.take();
    for (int i = 0; i < kVariables; i += 97)
        ASSERT_EQ(stored(nameOf(i), kDword), std::to_string(i));
    EXPECT_EQ(journal_.take(), "") << "the newer one is still found first";
    for (int i = 0; i < kVariables; i += 3)
        insert(i, kDword | kDeleted);
    for (int i = 0; i < kVariables; ++i)
        ASSERT_EQ(stored(nameOf(i), kDword), i % 3 == 0 ? "-" : std::to_string(i));
    EXPECT_EQ(store_.size(), 133'333u + 2'062u);
}

}  // namespace
}  // namespace orvc
