#include "lists/list_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <list>
#include <new>
#include <random>
#include <set>

namespace orvc {
namespace {

struct Item {
    std::string key;
    std::string name;
    int size = 0;
};

class ListModelTest : public testing::Test {
  protected:
    using Slot = ListModel<Item>::Slot;

    const Item& add(const std::string& name, int size = 0) {
        items_.push_back({name, name, size});
        model_.insert(items_.back());
        return items_.back();
    }
    void addAll(std::initializer_list<const char*> names) {
        for (const char* name : names)
            add(name);
    }
    // The rows, a selected one in brackets.
    std::string rows() const {
        std::string text;
        for (std::size_t row = 0; row < model_.size(); ++row) {
            EXPECT_EQ(model_.rowOf(model_.at(row)), row);
            const std::string& name = model_.at(row).name;
            text += (text.empty() ? "" : " ") + (model_.isSelected(row) ? "[" + name + "]" : name);
        }
        return text;
    }
    void select(std::initializer_list<std::size_t> rows) {
        for (const std::size_t row : rows)
            model_.setSelected(row, true);
    }
    Item& item(const std::string& key) { return *std::ranges::find(items_, key, &Item::key); }

    std::list<Item> items_;
    ListModel<Item> model_{[](const Item& item) { return item.name; },
                           [](const Item& item) { return std::string_view(item.key); }};
};

TEST_F(ListModelTest, RowsComeChangeMoveAndGo) {
    addAll({"c", "a", "b"});
    EXPECT_EQ(rows(), "a b c");
    item("a").name = "d";
    model_.update(item("a"));
    EXPECT_EQ(rows(), "d b c") << "what is shown changes in place";
    model_.reorder(item("a"));
    EXPECT_EQ(rows(), "b c d");
    item("b").name = "c";
    model_.reorder(item("b"));
    EXPECT_EQ(model_.at(0).key, "b") << "of equals the latest first";
    model_.erase(item("c"));
    model_.erase(item("c"));
    EXPECT_EQ(rows(), "c d");
    EXPECT_EQ(model_.rowOf(item("c")), std::nullopt);
}

TEST_F(ListModelTest, AnotherOrderPlacesRowsThatComeLaterAndMovesNoneThatChange) {
    add("a", 2), add("b", 1), add("c", 2), add("d", 1);
    // The greatest first; by what the rows held when they were arranged or came.
    std::vector<int> sizes;
    const auto remember = [&] {
        sizes.resize(model_.slotEnd());
        for (const Item& each : items_)
            if (const auto slot = model_.slotOf(each)) sizes[*slot] = each.size;
    };
    const auto arrange = [&](std::vector<const Item*> renamed = {}) {
        model_.arrange([&](Slot a, Slot b) { return sizes[b] - sizes[a]; },
                       [&](std::vector<Slot>& slots) {
                           remember();
                           model_.sortAsGiven(slots);
                           std::ranges::stable_sort(slots, std::greater<>(), [&](Slot slot) { return sizes[slot]; });
                       },
                       renamed);
    };
    arrange();
    EXPECT_EQ(rows(), "a c b d");
    add("bb", 2), add("e", 3), add("0", 0);
    remember();
    EXPECT_EQ(rows(), "e a bb c b d 0");
    item("b").size = 9;
    item("d").name = "A";
    model_.update(item("b"));
    model_.filterBy([](const Item& item, Slot) { return item.name != "a"; });
    EXPECT_EQ(rows(), "e bb c b A 0");
    model_.erase(item("c"));
    arrange({&item("d")});
    EXPECT_EQ(rows(), "b e bb A 0") << "a renamed row is placed by its new name";
    add("dd", 1);
    remember();
    EXPECT_EQ(rows(), "b e bb A dd 0");
    model_.arrange(nullptr, [&](std::vector<Slot>& slots) { model_.sortAsGiven(slots); });
    add("aa");
    EXPECT_EQ(rows(), "0 A aa b bb dd e");
    item("dd").name = "aa";
    model_.arrange(
        nullptr, [&](std::vector<Slot>& slots) { model_.sortAsGiven(slots); }, std::array{&item("dd")});
    EXPECT_EQ(model_.at(2).key, "dd") << "it counts as the latest";
}

TEST_F(ListModelTest, AnOrderThatFailsLeavesTheOneBefore) {
    addAll({"c", "a", "b"});
    item("a").name = "z";
    EXPECT_THROW(model_.arrange([](Slot, Slot) { return 1; }, [](std::vector<Slot>&) { throw std::bad_alloc(); },
                                std::array{&item("a")}),
                 std::bad_alloc);
    add("aa");
    EXPECT_EQ(rows(), "z aa b c");
    model_.erase(item("a"));
    EXPECT_EQ(rows(), "aa b c");
}

TEST_F(ListModelTest, SlotsStayWithTheirRowsAndAreGivenOutAgain) {
    addAll({"c", "a", "b"});
    std::set<Slot> slots;
    for (const Item& each : items_)
        EXPECT_TRUE(slots.insert(*model_.slotOf(each)).second);
    EXPECT_LT(*slots.rbegin(), model_.slotEnd());
    const Slot freed = *model_.slotOf(item("a"));
    const Slot kept = *model_.slotOf(item("b"));
    model_.erase(item("a"));
    EXPECT_EQ(model_.slotOf(item("a")), std::nullopt);
    EXPECT_EQ(model_.nextSlot(), freed);
    EXPECT_EQ(model_.slotOf(add("d")), freed);
    item("b").name = "e";
    model_.reorder(item("b"));
    EXPECT_EQ(model_.slotOf(item("b")), kept);
    EXPECT_EQ(model_.slotEnd(), 3u);
    model_.clear();
    EXPECT_EQ(model_.nextSlot(), 0u);
}

TEST_F(ListModelTest, AFilterHidesAndDeselects) {
    addAll({"ab", "b", "bc", "c"});
    select({0, 3});
    model_.filterBy([](const Item& item, Slot) { return item.name.find('b') != std::string::npos; });
    EXPECT_EQ(rows(), "[ab] b bc");
    EXPECT_EQ(model_.total(), 4u);
    EXPECT_EQ(model_.rowOf(item("c")), std::nullopt);
    item("c").name = "aab";
    model_.update(item("c"));
    EXPECT_EQ(rows().substr(0, 4), "[ab]") << "its place is that of its order";
    model_.reorder(item("c"));
    EXPECT_EQ(rows(), "aab [ab] b bc");
    item("ab").name = "a";
    model_.update(item("ab"));
    EXPECT_EQ(rows(), "aab b bc");
    EXPECT_EQ(model_.selectedCount(), 0u);
    add("bb"), add("x");
    EXPECT_EQ(rows(), "aab b bb bc");
    model_.erase(item("bb"));
    model_.filterBy(nullptr);
    EXPECT_EQ(rows(), "aab a b bc x");
}

TEST_F(ListModelTest, TheSelectionIsKeptByKeyWhenAllRowsGoAndComeAgain) {
    addAll({"a", "b", "c"});
    select({0, 2});
    EXPECT_EQ(model_.firstSelected(), 0u);
    model_.clear();
    items_.clear();
    EXPECT_EQ(model_.selectedCount(), 0u);
    addAll({"c", "b", "d"});
    EXPECT_EQ(rows(), "b [c] d");
    model_.selectOnly(0);
    addAll({"a"});
    EXPECT_EQ(rows(), "a [b] c d") << "another selection ends the waiting for what is not there";
    model_.erase(item("b"));
    EXPECT_EQ(model_.firstSelected(), std::nullopt);
}

TEST_F(ListModelTest, ManyRowsAreSelectedAtOnce) {
    addAll({"e", "d", "c", "b", "a"});
    const auto selected = [&] {
        std::string names;
        for (const Item* each : model_.selectedRecords())
            names += each->name;
        EXPECT_EQ(names.size(), model_.selectedCount());
        return names;
    };
    EXPECT_EQ(selected(), "");
    model_.setSelected(1, 3, true);
    model_.setSelected(2, 1, false);
    EXPECT_EQ(selected(), "bd") << "in the order of the rows";
    model_.filterBy([](const Item& item, Slot) { return item.name < "d"; });
    model_.selectAll();
    model_.filterBy(nullptr);
    EXPECT_EQ(selected(), "abc") << "what the filter hid was not selected";
    model_.selectOnly(std::nullopt);
    EXPECT_EQ(selected(), "");
}

TEST_F(ListModelTest, AFilterThatJudgesOtherwiseIsAskedAgain) {
    addAll({"a", "b", "c"});
    std::string hidden = "a";
    model_.filterBy([&](const Item& item, Slot) { return item.name != hidden; });
    select({0, 1});
    hidden = "c";
    model_.filterAnew();
    EXPECT_EQ(rows(), "a [b]");
}

TEST_F(ListModelTest, EveryChangeIsTold) {
    int told = 0;
    model_.observe([&] { ++told; });
    const auto changes = [&](const auto& work) {
        const int before = told;
        const std::uint64_t revision = model_.revision();
        work();
        EXPECT_EQ(model_.revision() != revision, told != before);
        return told != before;
    };
    EXPECT_TRUE(changes([&] { add("a"); }));
    EXPECT_TRUE(changes([&] { model_.update(item("a")); }));
    EXPECT_FALSE(changes([&] { model_.update(Item()); })) << "no row of this list";
    EXPECT_TRUE(changes([&] { model_.reorder(item("a")); }));
    EXPECT_TRUE(changes([&] { model_.erase(item("a")); }));
    EXPECT_TRUE(changes([&] { model_.clear(); }));
}

// Against a list that is sorted anew after each step.
TEST_F(ListModelTest, ManyRandomStepsLeaveWhatOneWouldExpect) {
    std::minstd_rand random(7);
    const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
    std::vector<std::pair<std::string, const Item*>> expected;  // newest of equals first
    const auto put = [&](const Item& item) {
        const auto place =
            std::ranges::lower_bound(expected, item.name, {}, &std::pair<std::string, const Item*>::first);
        expected.insert(place, {item.name, &item});
    };
    const auto isShown = [](const Item& item) { return item.name.back() != '3'; };
    for (int step = 0; step < 6'000; ++step) {
        if (step == 3'000) model_.filterBy([&](const Item& item, Slot) { return isShown(item); });
        if (expected.size() < 100 || below(3) > 0) {
            items_.push_back({std::to_string(step), std::to_string(below(50)), 0});
            model_.insert(items_.back());
            put(items_.back());
        } else {
            const std::size_t row = below(expected.size());
            Item& item = const_cast<Item&>(*expected[row].second);
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(row));
            if (below(2) == 0) {
                model_.erase(item);
            } else {
                item.name = std::to_string(50 + below(50)) + " " + std::to_string(step);  // another name each time
                model_.reorder(item);
                put(item);
            }
        }
        if (step % 500 != 499) continue;
        std::vector<const Item*> shown;
        for (const auto& [name, item] : expected)
            if (step < 3'000 || isShown(*item)) shown.push_back(item);
        ASSERT_EQ(model_.size(), shown.size());
        for (std::size_t row = 0; row < shown.size(); ++row)
            ASSERT_EQ(&model_.at(row), shown[row]) << "step " << step << ", row " << row;
    }
}

}  // namespace
}  // namespace orvc
