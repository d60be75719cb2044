// The Event list without a window: its rows, columns and cells.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

#include "lists/list_model.h"
#include "lists/list_source.h"
#include "lists/sort_key.h"
#include "model/event_list.h"
#include "support/clock.h"
#include "support/string_table.h"

namespace orvc {

// A column of the Event list: one row of this table is all there is to it.
struct EventColumn {
    unsigned title;  // id of the string table
    int share;       // of the list's width, in percent
    std::string (*text)(const EventRecord& record, const class EventTable& table);
};

// Purpose: shows each Event of an EventList that is complete, ordered by name, of equal names the newest first.
// Thread: user-interface thread. Lifetime: what the constructor takes outlives the table.
class EventTable final : public EventListObserver, public ListSource {
  public:
    EventTable(const StringTable& strings, const Clock& clock, SortKeyMaker makeSortKey);

    // Whether an Event's groups are known is asked of `directory`, while `isReady` says that it is complete. Both
    // outlive the table's use; without them every group counts as known.
    void judgeBy(const Directory& directory, std::function<bool()> isReady);

    static std::span<const EventColumn> columns();

    // ListSource
    std::size_t size() const override { return model_.size(); }
    std::string cell(std::size_t row, std::size_t column) const override;

    // EventListObserver
    void eventChanged(const EventRecord& record, bool renamed) override;
    void eventGone(const EventRecord& record) override { model_.erase(record); }
    void eventsCleared() override { model_.clear(); }

    using Model = ListModel<EventRecord>;
    Model& model() { return model_; }
    const Model& model() const { return model_; }
    // The selected Event that stands first; null when none is selected.
    const EventRecord* selectedRecord() const;

    // For the cells.
    const StringTable& strings() const { return strings_; }
    const Clock& clock() const { return clock_; }
    // The server marked the Event, or it names a group that does not exist.
    bool isBad(const EventRecord& record) const;

  private:
    const StringTable& strings_;
    const Clock& clock_;
    const Directory* directory_ = nullptr;
    std::function<bool()> isReady_;
    Model model_;
};

}  // namespace orvc
