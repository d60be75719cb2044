// How the rows of a list are sorted, all at once or some that came later.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace orvc {

// Sorts items by their texts, eight bytes at a time: with ten thousands of texts scattered in memory, waiting for them
// is what takes the time, and each is looked at only as far as it takes to tell it from the others.
template <typename Item, typename IsBefore>
class TextSort {
  public:
    // Throws std::bad_alloc.
    template <typename TextOf>
    TextSort(const std::vector<Item>& items, const TextOf& textOf, const IsBefore& isBefore)
        : items_(items), texts_(items.size()), order_(items.size()), isBefore_(isBefore) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            texts_[i] = textOf(items[i]);
            order_[i].index = static_cast<std::uint32_t>(i);
        }
    }

    std::vector<Item> sorted() {
        sort(order_.begin(), order_.end(), sharedLength());
        std::vector<Item> items(items_.size());
        std::ranges::transform(order_, items.begin(), [this](const Entry& entry) { return items_[entry.index]; });
        return items;
    }

  private:
    struct Entry {
        std::uint64_t bytes;  // the ones looked at, the first one most significant
        std::uint32_t index;
    };
    using Iterator = typename std::vector<Entry>::iterator;

    // What all texts begin with tells nothing.
    std::size_t sharedLength() const {
        std::size_t shared = texts_.front().size();
        for (const std::string_view text : texts_) {
            const auto end = std::ranges::mismatch(text, texts_.front().substr(0, shared)).in1;
            shared = static_cast<std::size_t>(end - text.begin());
        }
        return shared;
    }
    static std::uint64_t bytesAt(std::string_view text, std::size_t at) {
        std::uint64_t bytes = 0;
        for (std::size_t i = at; i < at + sizeof bytes; ++i)
            bytes = bytes << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
        return bytes;
    }
    // Those between `begin` and `end` have the same first `at` bytes, where missing ones count as 0.
    void sort(Iterator begin, Iterator end, std::size_t at) {
        bool haveMore = false;
        for (auto entry = begin; entry != end; ++entry) {
            const std::string_view text = texts_[entry->index];
            entry->bytes = bytesAt(text, at);
            haveMore = haveMore || text.size() > at;
        }
        if (!haveMore) return sortEqual(begin, end);
        std::sort(begin, end, [](const Entry& a, const Entry& b) { return a.bytes < b.bytes; });
        while (begin != end) {
            const auto runEnd =
                std::find_if(begin, end, [&](const Entry& entry) { return entry.bytes != begin->bytes; });
            if (runEnd - begin > 1) sort(begin, runEnd, at + sizeof begin->bytes);
            begin = runEnd;
        }
    }
    // Only zeros at the end tell these texts apart.
    void sortEqual(Iterator begin, Iterator end) const {
        std::sort(begin, end, [this](const Entry& a, const Entry& b) {
            const std::size_t first = texts_[a.index].size();
            const std::size_t second = texts_[b.index].size();
            return first != second ? first < second : isBefore_(items_[a.index], items_[b.index]);
        });
    }

    const std::vector<Item>& items_;
    std::vector<std::string_view> texts_;
    std::vector<Entry> order_;
    const IsBefore& isBefore_;
};

// Sorts `items` by the bytes of the text that `textOf` gives for each; of equal texts `isBefore` says which comes
// first. Errors: throws std::bad_alloc and changes nothing then.
template <typename Item, typename TextOf, typename IsBefore>
void sortByText(std::vector<Item>& items, const TextOf& textOf, const IsBefore& isBefore) {
    const auto precedes = [&](const Item& a, const Item& b) {
        const int compared = std::string_view(textOf(a)).compare(textOf(b));
        return compared != 0 ? compared < 0 : isBefore(a, b);
    };
    if (!std::ranges::is_sorted(items, precedes)) items = TextSort(items, textOf, isBefore).sorted();
}

// `came`, a copy of the last items, go to their places among the others, which are in order. Needs no memory; `came` is
// sorted meanwhile.
template <typename Item, typename IsBefore>
void mergeTail(std::vector<Item>& items, std::span<Item> came, const IsBefore& isBefore) {
    std::ranges::sort(came, isBefore);
    auto end = items.end() - static_cast<std::ptrdiff_t>(came.size());
    // From the last one on: all items between two of them move up together.
    auto to = items.end();
    for (std::size_t i = came.size(); i-- > 0;) {
        const auto place = std::lower_bound(items.begin(), end, came[i], isBefore);
        to = std::move_backward(place, end, to);
        *--to = came[i];
        end = place;
    }
}

}  // namespace orvc
