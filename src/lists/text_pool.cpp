#include "lists/text_pool.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "lists/row_sort.h"

namespace orvc {
namespace {

constexpr std::size_t kFirstBuckets = 64;

}  // namespace

TextPool::TextPool(TextFolder fold, SortKeyMaker makeSortKey)
    : fold_(std::move(fold)),
      makeSortKey_(std::move(makeSortKey)),
      texts_(std::make_unique<Texts>()),
      index_(kFirstBuckets, Hash{texts_.get()}, Equal{texts_.get()}) {}

TextPool::Id TextPool::intern(std::string_view text) {
    if (text.empty()) return 0;
    const auto found = index_.find(text);
    return found != index_.end() ? *found : add(text, fold_(text));
}

TextPool::Span TextPool::Texts::append(std::string_view text) {
    const auto at = static_cast<std::uint32_t>(bytes.size());
    bytes.append(text);
    return {at, static_cast<std::uint32_t>(text.size())};
}

TextPool::Id TextPool::add(std::string_view text, std::string_view folded) {
    const auto id = static_cast<Id>(size());
    const std::size_t byteCount = texts_->bytes.size();
    try {
        const Span span = texts_->append(text);
        texts_->entries.push_back({span, folded == text ? span : texts_->append(folded)});
        index_.insert(id);
    } catch (...) {
        texts_->bytes.resize(byteCount);
        texts_->entries.resize(id);
        throw;
    }
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
    texts_.swap(kept.texts_);
    index_.swap(kept.index_);
    sortKeys_.swap(kept.sortKeys_);
}

void TextPool::clear() {
    index_.clear();
    texts_->entries.resize(1);
    texts_->bytes.clear();
    sortKeys_.clear();
}

}  // namespace orvc
