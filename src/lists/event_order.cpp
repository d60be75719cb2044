#include "lists/event_order.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <numeric>
#include <utility>

namespace orvc {
namespace {

int compareNumbers(std::uint32_t a, std::uint32_t b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

// Sorts slots by the number that each has. Equal ones stay as they stand. Three rounds of eleven bits.
void sortByNumber(std::vector<EventOrder::Slot>& slots, const std::vector<std::uint32_t>& numbers) {
    constexpr int kBits = 11;
    constexpr std::uint32_t kDigits = 1 << kBits;
    std::vector<EventOrder::Slot> sorted(slots.size());
    for (int shift = 0; shift < 32; shift += kBits) {
        const auto digit = [&](EventOrder::Slot slot) { return numbers[slot] >> shift & (kDigits - 1); };
        std::array<std::size_t, kDigits + 1> places{};
        for (const EventOrder::Slot slot : slots)
            ++places[digit(slot) + 1];
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const EventOrder::Slot slot : slots)
            sorted[places[digit(slot)]++] = slot;
        slots.swap(sorted);
    }
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
    Model::Compare compareRows;
    if (!keys.empty()) compareRows = [this](Slot a, Slot b) { return compare(a, b); };
    model_.arrange(
        std::move(compareRows), [&](Slots& slots) { permute(slots, keys, renamed); }, renamed);
    texts_.forgetRenamed();
}

// What may fail comes first; then the members take it over.
void EventOrder::permute(Slots& slots, std::vector<EventSortKey>& keys, Records renamed) {
    Given given = readGiven(slots, renamed);
    Slots sorted = slots;
    sortByNumber(sorted, given.positions);
    if (given.names.empty() && std::ranges::find(keys, EventColumnId::kName, &EventSortKey::column) != keys.end())
        given.names = numberNames(sorted);
    std::vector<EventValues> values;
    if (!keys.empty()) values = texts_.allValues();
    // The least important column first: each sort keeps what the one before did.
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        Numbers numbers = key->column == EventColumnId::kName ? given.names : numbersOf(key->column, values);
        if (key->descending) std::ranges::transform(numbers, numbers.begin(), std::bit_not<>());
        sortByNumber(sorted, numbers);
    }
    if (keys.empty()) given = {};
    slots.swap(sorted);
    given_ = std::move(given);
    placed_.swap(values);
    keys_.swap(keys);
}

EventOrder::Given EventOrder::readGiven(const Slots& slots, Records renamed) const {
    Given given = given_;
    given.positions.resize(model_.slotEnd(), kNew);
    for (const EventRecord* record : renamed)
        if (const auto slot = model_.slotOf(*record)) given.positions[*slot] = kNew;
    Slots sorted = slots;
    if (!isGiven()) sortByNumber(sorted, given.positions);
    // The new ones stand behind the others.
    const auto settled = std::ranges::find(sorted, kNew, [&](Slot slot) { return given.positions[slot]; });
    if (settled == sorted.end()) return given;
    if (!isGiven() || !renamed.empty()) model_.sortAsGiven(sorted, static_cast<std::size_t>(settled - sorted.begin()));
    for (std::uint32_t position = 0; const Slot slot : sorted)
        given.positions[slot] = position++;
    given.names.clear();
    return given;
}

EventOrder::Numbers EventOrder::numberNames(const Slots& slots) const {
    Numbers names(model_.slotEnd());
    for (std::size_t i = 1; i < slots.size(); ++i) {
        const bool isSame = model_.orderOf(slots[i]) == model_.orderOf(slots[i - 1]);
        names[slots[i]] = names[slots[i - 1]] + (isSame ? 0 : 1);
    }
    return names;
}

EventOrder::Numbers EventOrder::numbersOf(EventColumnId column, const std::vector<EventValues>& values) {
    Numbers numbers(values.size());
    if (column == EventColumnId::kLastEvent) {
        std::ranges::transform(values, numbers.begin(), &EventValues::lastTriggered);
    } else if (column == EventColumnId::kDelay) {
        std::ranges::transform(values, numbers.begin(), &EventValues::delay);
    } else {
        const std::size_t index = sharedIndex(column);
        const Numbers ranks = rankTexts(index, values);
        std::ranges::transform(values, numbers.begin(),
                               [&](const EventValues& each) { return ranks[each.texts[index]]; });
    }
    return numbers;
}

// By text. Only of the texts in that column: the others need no sort keys.
EventOrder::Numbers EventOrder::rankTexts(std::size_t index, const std::vector<EventValues>& values) {
    std::vector<bool> isThere(texts_.pool().size());
    for (const EventValues& each : values)
        isThere[each.texts[index]] = true;
    std::vector<TextPool::Id> texts;
    for (TextPool::Id id = 0; id < isThere.size(); ++id)
        if (isThere[id]) texts.push_back(id);
    return texts_.pool().rank(std::move(texts));
}

int EventOrder::compare(Slot a, Slot b) const {
    for (const EventSortKey& key : keys_)
        if (const int compared = compareBy(key.column, a, b); compared != 0)
            return key.descending ? -compared : compared;
    return 0;
}

int EventOrder::compareBy(EventColumnId column, Slot a, Slot b) const {
    const EventValues& first = placed_[a];
    const EventValues& second = placed_[b];
    switch (column) {
        case EventColumnId::kName:
            return model_.orderOf(a).compare(model_.orderOf(b));
        case EventColumnId::kLastEvent:
            return compareNumbers(first.lastTriggered, second.lastTriggered);
        case EventColumnId::kDelay:
            return compareNumbers(first.delay, second.delay);
        default:
            return texts_.pool().compare(first.texts[sharedIndex(column)], second.texts[sharedIndex(column)]);
    }
}

void EventOrder::makeRoom(Slot slot) {
    if (isGiven()) return;
    if (slot >= given_.positions.size()) given_.positions.resize(slot + 1, kNew);
    if (slot >= placed_.size()) placed_.resize(slot + 1);
}

void EventOrder::came(Slot slot) {
    if (isGiven()) return;
    given_.positions[slot] = kNew;
    const EventValues values = texts_.values(slot);
    for (const TextPool::Id text : values.texts)
        texts_.pool().prepareToCompare(text);
    placed_[slot] = values;
}

void EventOrder::gone(Slot slot) {
    if (slot < placed_.size()) placed_[slot] = {};
}

}  // namespace orvc
