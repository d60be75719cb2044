#include "lists/event_table.h"

#include <array>
#include <utility>

#include "resources/resource.h"

namespace orvc {
namespace {

std::string nameText(const EventRecord& record, const EventTable&) {
    return record.name.value_or(std::string());
}

std::string statusText(const EventRecord& record, const EventTable& table) {
    // An Event whose `Disabled` value has not arrived is shown as disabled.
    if (record.disabled != 0u) return table.strings().text(IDS_STATUS_DISABLED);
    return table.strings().text(table.isBad(record) ? IDS_STATUS_ERROR : IDS_STATUS_AVAILABLE);
}

std::string lastEventText(const EventRecord& record, const EventTable& table) {
    const std::uint32_t lastTriggered = record.lastTriggered.value_or(0);
    return lastTriggered == 0 ? table.strings().text(IDS_NEVER) : formatDate(table.clock().toLocal(lastTriggered));
}

std::string responseText(const EventRecord& record, const EventTable& table) {
    const bool isKnown =
        record.responseType && *record.responseType <= static_cast<std::uint32_t>(Response::kTtsMessage);
    return table.strings().text(isKnown ? IDS_RESPONSE_NONE + *record.responseType : IDS_RESPONSE_UNKNOWN);
}

constexpr std::array<EventColumn, 4> kColumns{{
    {IDS_COLUMN_EVENT_NAME, 38, nameText},
    {IDS_COLUMN_STATUS, 15, statusText},
    {IDS_COLUMN_LAST_EVENT, 22, lastEventText},
    {IDS_COLUMN_RESPONSE, 25, responseText},
}};

}  // namespace

EventTable::EventTable(const StringTable& strings, const Clock& clock, SortKeyMaker makeSortKey)
    : strings_(strings),
      clock_(clock),
      model_([make = std::move(makeSortKey)](
                 const EventRecord& record) { return make(record.name ? *record.name : std::string_view()); },
             [](const EventRecord& record) { return std::string_view(record.key); }) {}

void EventTable::judgeBy(const Directory& directory, std::function<bool()> isReady) {
    directory_ = &directory;
    isReady_ = std::move(isReady);
}

std::span<const EventColumn> EventTable::columns() {
    return kColumns;
}

std::string EventTable::cell(std::size_t row, std::size_t column) const {
    return kColumns.at(column).text(model_.at(row), *this);
}

void EventTable::eventChanged(const EventRecord& record, bool renamed) {
    if (!model_.contains(record))
        model_.insert(record);
    else if (renamed)
        model_.reorder(record);
    else
        model_.update(record);
}

const EventRecord* EventTable::selectedRecord() const {
    const auto row = model_.firstSelected();
    return row ? &model_.at(*row) : nullptr;
}

bool EventTable::isBad(const EventRecord& record) const {
    if (record.badData == 1u) return true;
    return directory_ != nullptr && isReady_() && !isEventValid(record, *directory_);
}

}  // namespace orvc
