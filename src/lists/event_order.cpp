#include "lists/event_order.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace orvc {
namespace {

int compareNumbers(std::uint32_t a, std::uint32_t b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

// Keeps rows of equal ranks as they stand.
template <typename Place, typename RankOf>
void sortByRank(std::vector<const Place*>& rows, bool descending, const RankOf& rankOf) {
    constexpr std::uint64_t kLow = 0xFFFFFFFF;
    std::vector<std::uint64_t> sorted(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::uint32_t rank = rankOf(*rows[i]);
        sorted[i] = std::uint64_t{descending ? ~rank : rank} << 32 | i;
    }
    std::ranges::sort(sorted);
    const std::vector<const Place*> before = rows;
    std::ranges::transform(sorted, rows.begin(), [&](std::uint64_t each) { return before[each & kLow]; });
}

}  // namespace

void EventOrder::sortBy(const EventSortKey& key) {
    std::vector<EventSortKey> keys;
    if (key != EventSortKey{}) {
        keys = keys_;
        std::erase_if(keys, [&](const EventSortKey& each) { return each.column == key.column; });
        keys.insert(keys.begin(), key);
    }
    arrange(std::move(keys));
}

void EventOrder::sortAnew() {
    if (!isGiven()) arrange(keys_);
}

void EventOrder::arrange(std::vector<EventSortKey> keys) {
    const std::vector<const EventRecord*> renamed = texts_.renamed();
    if (keys.empty()) {
        model_.arrange(nullptr, nullptr, renamed);
        keys_.clear();
        placed_.clear();
    } else {
        model_.arrange([this](const Place& a, const Place& b) { return compare(a, b); },
                       [&](Places& rows) { permute(rows, keys); }, renamed);
    }
    texts_.forgetRenamed();
}

void EventOrder::permute(Places& rows, std::vector<EventSortKey>& keys) {
    std::vector<EventValues> values(model_.slotEnd());
    Ranks nameRanks(values.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        values[rows[i]->slot] = texts_.values(rows[i]->slot);
        if (i == 0) continue;
        const std::uint32_t before = nameRanks[rows[i - 1]->slot];
        nameRanks[rows[i]->slot] = before + (rows[i]->order != rows[i - 1]->order ? 1 : 0);
    }
    // The least important column first: each sort keeps what the one before did.
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        const auto sort = [&](const auto& rankOf) { sortByRank(rows, key->descending, rankOf); };
        if (key->column == EventColumnId::kName) {
            sort([&](const Place& row) { return nameRanks[row.slot]; });
        } else if (key->column == EventColumnId::kLastEvent) {
            sort([&](const Place& row) { return values[row.slot].lastTriggered; });
        } else if (key->column == EventColumnId::kDelay) {
            sort([&](const Place& row) { return values[row.slot].delay; });
        } else {
            const auto column = static_cast<std::size_t>(key->column);
            const Ranks ranks = rankTexts(column, values, rows);
            sort([&](const Place& row) { return ranks[values[row.slot].texts[column]]; });
        }
    }
    placed_.swap(values);
    keys_.swap(keys);
}

// By text. Only of the texts in that column: the others need no sort keys.
EventOrder::Ranks EventOrder::rankTexts(std::size_t column, const std::vector<EventValues>& values,
                                        const Places& rows) {
    std::vector<bool> isThere(texts_.pool().size());
    for (const Place* row : rows)
        isThere[values[row->slot].texts[column]] = true;
    std::vector<TextPool::Id> texts;
    for (TextPool::Id id = 0; id < isThere.size(); ++id)
        if (isThere[id]) texts.push_back(id);
    return texts_.pool().rank(std::move(texts));
}

int EventOrder::compare(const Place& a, const Place& b) const {
    for (const EventSortKey& key : keys_)
        if (const int compared = compareBy(key.column, a, b); compared != 0)
            return key.descending ? -compared : compared;
    return 0;
}

int EventOrder::compareBy(EventColumnId column, const Place& a, const Place& b) const {
    const EventValues& first = placed_[a.slot];
    const EventValues& second = placed_[b.slot];
    const auto index = static_cast<std::size_t>(column);
    switch (column) {
        case EventColumnId::kName:
            return a.order.compare(b.order);
        case EventColumnId::kLastEvent:
            return compareNumbers(first.lastTriggered, second.lastTriggered);
        case EventColumnId::kDelay:
            return compareNumbers(first.delay, second.delay);
        default:
            return texts_.pool().compare(first.texts[index], second.texts[index]);
    }
}

void EventOrder::makeRoom() {
    if (!isGiven() && model_.slotEnd() > placed_.size()) placed_.resize(model_.slotEnd());
}

void EventOrder::came(Slot slot) {
    if (isGiven()) return;
    const EventValues values = texts_.values(slot);
    for (const EventSortKey& key : keys_)
        texts_.pool().prepareToCompare(values.texts[static_cast<std::size_t>(key.column)]);
    placed_[slot] = values;
}

void EventOrder::gone(Slot slot) {
    if (slot < placed_.size()) placed_[slot] = {};
}

}  // namespace orvc
