// How the rows of a list are sorted, all at once or some that came later.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace orvc {

// Sorts `items` by the bytes of the text that `textOf` gives for each; of equal texts `isBefore` says which comes
// first.
//
// What all texts begin with is skipped. The eight bytes behind it are kept beside each item, so most comparisons touch
// no text: with ten thousands of texts scattered in memory, waiting for them is what takes the time. Errors: throws
// std::bad_alloc and changes nothing then.
template <typename Item, typename TextOf, typename IsBefore>
void sortByText(std::vector<Item>& items, const TextOf& textOf, const IsBefore& isBefore) {
    const auto precedes = [&](const Item& a, const Item& b) {
        const int compared = std::string_view(textOf(a)).compare(textOf(b));
        return compared != 0 ? compared < 0 : isBefore(a, b);
    };
    if (std::ranges::is_sorted(items, precedes)) return;
    const std::string_view first = textOf(items.front());
    std::size_t shared = first.size();
    for (const Item& item : items) {
        const std::string_view text = textOf(item);
        const auto end = std::ranges::mismatch(text, first.substr(0, shared)).in1;
        shared = static_cast<std::size_t>(end - text.begin());
    }
    std::vector<std::pair<std::uint64_t, Item>> sorted;
    sorted.reserve(items.size());
    for (const Item& item : items) {
        const std::string_view text = std::string_view(textOf(item)).substr(shared);
        std::uint64_t start = 0;
        for (std::size_t i = 0; i < sizeof start; ++i)
            start = start << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
        sorted.emplace_back(start, item);
    }
    std::ranges::sort(sorted, [&](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : precedes(a.second, b.second);
    });
    std::ranges::transform(sorted, items.begin(), &std::pair<std::uint64_t, Item>::second);
}

// The last items of `items`, at most `kMost`, go to their places among the others, which are in order. Needs no memory.
template <std::size_t kMost, typename Item, typename IsBefore>
void mergeTail(std::vector<Item>& items, std::size_t count, const IsBefore& isBefore) {
    std::array<Item, kMost> came;
    auto end = items.end() - static_cast<std::ptrdiff_t>(count);
    const auto cameEnd = std::copy(end, items.end(), came.begin());
    std::sort(came.begin(), cameEnd, isBefore);
    // From the last one on: all items between two of them move up together.
    auto to = items.end();
    for (auto item = cameEnd; item != came.begin();) {
        --item;
        const auto place = std::lower_bound(items.begin(), end, *item, isBefore);
        to = std::move_backward(place, end, to);
        *--to = *item;
        end = place;
    }
}

}  // namespace orvc
