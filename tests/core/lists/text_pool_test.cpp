#include "lists/text_pool.h"

#include <gtest/gtest.h>

#include <string>

namespace orvc {
namespace {

TEST(TextPoolTest, EachTextHasOneNumberItsFoldedFormAndItsPlaceInTheOrder) {
    TextPool pool(foldAscii, foldAscii);
    EXPECT_EQ(pool.intern(""), 0u);
    std::vector<TextPool::Id> ids;
    for (int i = 0; i < 3'000; ++i)
        ids.push_back(pool.intern("Text " + std::to_string(i * 7 % 3'000)));
    for (int i = 0; i < 3'000; ++i) {
        const std::string number = std::to_string(i * 7 % 3'000);
        ASSERT_EQ(pool.intern("Text " + number), ids[static_cast<std::size_t>(i)]);
        ASSERT_EQ(pool.text(ids[static_cast<std::size_t>(i)]), "Text " + number);
        ASSERT_EQ(pool.folded(ids[static_cast<std::size_t>(i)]), "text " + number);
    }
    EXPECT_EQ(pool.size(), 3'001u);

    const TextPool::Id b = pool.intern("b"), capital = pool.intern("B"), a = pool.intern("A");
    const auto ranks = pool.rank({b, 0, capital, a});
    EXPECT_LT(ranks[0], ranks[a]);
    EXPECT_LT(ranks[a], ranks[b]);
    EXPECT_EQ(ranks[b], ranks[capital]);
    EXPECT_LT(pool.compare(a, b), 0);
    EXPECT_GT(pool.compare(b, 0), 0);
    EXPECT_EQ(pool.compare(b, capital), 0);
    const TextPool::Id late = pool.intern("aa");
    pool.prepareToCompare(late);
    EXPECT_LT(pool.compare(a, late), 0);
    EXPECT_LT(pool.compare(late, b), 0);
}

TEST(TextPoolTest, TextsThatAreKeptHaveNewNumbersAndTheirOrder) {
    TextPool pool(foldAscii, foldAscii);
    const TextPool::Id gone = pool.intern("gone"), b = pool.intern("B"), a = pool.intern("a");
    pool.rank({gone, b, a});
    std::vector<TextPool::Id> numbers(pool.size());
    numbers[b] = numbers[a] = 1;
    pool.keepOnly(numbers);
    EXPECT_EQ(pool.size(), 3u);
    EXPECT_EQ(pool.text(numbers[a]), "a");
    EXPECT_EQ(pool.folded(numbers[b]), "b");
    EXPECT_EQ(pool.intern("B"), numbers[b]);
    EXPECT_LT(pool.compare(numbers[a], numbers[b]), 0);
    EXPECT_EQ(pool.intern("gone"), 3u);
    pool.clear();
    EXPECT_EQ(pool.intern("a"), 1u);
}

}  // namespace
}  // namespace orvc
