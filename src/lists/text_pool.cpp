#include "lists/text_pool.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "lists/row_sort.h"

namespace orvc {
namespace {

constexpr std::size_t kFirstPlaces = 64;  // a power of two

}  // namespace

TextPool::TextPool(TextFolder fold, SortKeyMaker makeSortKey)
    : fold_(std::move(fold)), makeSortKey_(std::move(makeSortKey)), index_(kFirstPlaces) {}

TextPool::Id TextPool::intern(std::string_view text) {
    if (text.empty()) return 0;
    const Id known = index_[placeOf(text)];
    return known != 0 ? known : add(text, fold_(text));
}

std::size_t TextPool::placeOf(std::string_view wanted) const {
    const std::size_t last = index_.size() - 1;
    std::size_t place = std::hash<std::string_view>()(wanted) & last;
    while (index_[place] != 0 && text(index_[place]) != wanted)
        place = (place + 1) & last;
    return place;
}

void TextPool::growIndex() {
    std::vector<Id> larger(2 * index_.size());
    larger.swap(index_);
    for (Id id = 1; id < size(); ++id)
        index_[placeOf(text(id))] = id;
}

TextPool::Span TextPool::append(std::string_view text) {
    const auto at = static_cast<std::uint32_t>(bytes_.size());
    bytes_.append(text);
    return {at, static_cast<std::uint32_t>(text.size())};
}

TextPool::Id TextPool::add(std::string_view text, std::string_view folded) {
    if (2 * size() >= index_.size()) growIndex();
    const auto id = static_cast<Id>(size());
    const std::size_t byteCount = bytes_.size();
    try {
        const Span span = append(text);
        entries_.push_back({span, folded == text ? span : append(folded)});
    } catch (...) {
        bytes_.resize(byteCount);
        throw;
    }
    index_[placeOf(text)] = id;
    return id;
}

void TextPool::prepareToCompare(Id id) {
    if (id == 0 || (id < sortKeys_.size() && !sortKeys_[id].empty())) return;
    std::string key = makeSortKey_(text(id));
    if (id >= sortKeys_.size()) sortKeys_.resize(size());
    sortKeys_[id] = std::move(key);
}

const std::string& TextPool::sortKey(Id id) const {
    static const std::string none;
    return id < sortKeys_.size() ? sortKeys_[id] : none;
}

std::vector<std::uint32_t> TextPool::rank(std::vector<Id> ids) {
    for (const Id id : ids)
        prepareToCompare(id);
    const auto keyOf = [this](Id id) -> const std::string& { return sortKey(id); };
    sortByText(ids, keyOf, std::less<>());
    std::vector<std::uint32_t> ranks(size());
    for (std::size_t i = 1; i < ids.size(); ++i)
        ranks[ids[i]] = ranks[ids[i - 1]] + (compare(ids[i], ids[i - 1]) != 0 ? 1 : 0);
    return ranks;
}

void TextPool::keepOnly(std::vector<Id>& numbers) {
    TextPool kept(fold_, makeSortKey_);
    std::vector<Id> fresh(numbers.size());
    for (Id id = 1; id < numbers.size(); ++id)
        if (numbers[id] != 0) fresh[id] = kept.add(text(id), folded(id));
    if (!sortKeys_.empty()) kept.sortKeys_.resize(kept.size());
    // Nothing is changed up to here, and nothing fails from here on.
    for (Id id = 1; id < std::min(sortKeys_.size(), fresh.size()); ++id)
        if (fresh[id] != 0) kept.sortKeys_[fresh[id]] = std::move(sortKeys_[id]);
    numbers.swap(fresh);
    bytes_.swap(kept.bytes_);
    entries_.swap(kept.entries_);
    index_.swap(kept.index_);
    sortKeys_.swap(kept.sortKeys_);
}

void TextPool::clear() {
    std::ranges::fill(index_, 0);
    entries_.resize(1);
    bytes_.clear();
    sortKeys_.clear();
}

}  // namespace orvc
