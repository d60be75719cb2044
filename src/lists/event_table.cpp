#include "lists/event_table.h"

#include <new>
#include <utility>

namespace orvc {

EventTable::EventTable(const StringTable& strings, const Clock& clock, const SortKeyMaker& makeSortKey, TextFolder fold)
    : source_{strings, clock},
      model_([makeSortKey](
                 const EventRecord& record) { return makeSortKey(record.name ? *record.name : std::string_view()); },
             [](const EventRecord& record) { return std::string_view(record.key); }),
      texts_(source_, std::move(fold), makeSortKey) {}

void EventTable::judgeBy(const Directory& directory, std::function<bool()> isReady) {
    source_.directory = &directory;
    source_.isReady = std::move(isReady);
}

void EventTable::tellProblemsBy(std::function<std::string(const EventRecord&)> text,
                                std::function<bool(const EventRecord&)> hasProblem) {
    source_.problemText = std::move(text);
    source_.hasProblem = std::move(hasProblem);
}

void EventTable::textsChanged(const EventRecord& record) {
    const auto slot = model_.slotOf(record);
    if (!slot) return;
    texts_.changed(*slot, false);
    model_.update(record);
}

void EventTable::allTextsChanged() {
    texts_.allChanged();
    model_.filterAnew();
}

std::string EventTable::cell(std::size_t row, std::size_t column) const {
    return eventColumns()[column].text(model_.at(row), source_);
}

void EventTable::eventChanged(const EventRecord& record, bool renamed) {
    const auto slot = model_.slotOf(record);
    if (!slot) return insert(record);
    texts_.changed(*slot, renamed && !order_.isGiven());
    if (renamed && order_.isGiven())
        model_.reorder(record);
    else
        model_.update(record);
}

void EventTable::insert(const EventRecord& record) {
    const Model::Slot slot = model_.nextSlot();
    order_.makeRoom(slot);
    texts_.add(slot, record);
    try {
        model_.insert(record);
    } catch (...) {
        texts_.forget(slot);
        throw;
    }
    try {
        order_.came(slot);
    } catch (const std::bad_alloc&) {
        // The row stands where an empty one would, until the list is sorted anew.
    }
}

void EventTable::eventGone(const EventRecord& record) {
    const auto slot = model_.slotOf(record);
    if (!slot) return;
    model_.erase(record);
    texts_.forget(*slot);
    order_.gone(*slot);
}

void EventTable::eventsCleared() {
    model_.clear();
    texts_.clear();
    order_.clear();
}

void EventTable::filterBy(std::string_view text, EventState state) {
    texts_.forgetUnused(order_.placed());
    EventMatcher matcher(parseFilter(text, source_.strings, texts_.pool().folder()), state);
    const bool isEmpty = matcher.isEmpty();
    texts_.filterBy(std::move(matcher));
    if (isEmpty)
        model_.filterBy(nullptr);
    else
        model_.filterBy([this](const EventRecord&, Model::Slot slot) { return texts_.passes(slot); });
}

void EventTable::order(const EventSortKey* key) {
    texts_.forgetUnused(order_.placed());
    if (key != nullptr)
        order_.sortBy(*key);
    else
        order_.sortAnew();
}

const EventRecord* EventTable::selectedRecord() const {
    const auto row = model_.firstSelected();
    return row ? &model_.at(*row) : nullptr;
}

}  // namespace orvc
