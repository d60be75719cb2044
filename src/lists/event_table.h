// The Event list without a window: its rows, columns and cells, its filter and its order.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "lists/event_columns.h"
#include "lists/event_filter.h"
#include "lists/event_order.h"
#include "lists/event_texts.h"
#include "lists/list_model.h"
#include "lists/list_source.h"
#include "lists/sort_key.h"
#include "lists/text_folder.h"
#include "model/event_list.h"
#include "support/clock.h"
#include "support/string_table.h"

namespace orvc {

// Purpose: shows each Event of an EventList that is complete. At first all of them, ordered by name, of equal names the
// newest first. In any other order rows stay where they are when their Events change, until sortAnew().
//
// Cells are made from the record when they are asked for. Filter and order need the texts of all Events: those are
// worked out before the first filter or sort, or earlier by prepareTexts(), and again for each Event that has changed.
// What a text is made from beside the record (names of devices and Schedules, problems, whether the directory is
// complete) tells nobody when it changes: textsChanged() and allTextsChanged() do.
//
// Thread: user-interface thread. Lifetime: what the constructor and the setters take outlives the table's use.
// Errors: filterBy(), sortBy(), sortAnew() and prepareTexts() throw std::bad_alloc; order and selection are as before
// then.
class EventTable final : public EventListObserver, public ListSource {
  public:
    EventTable(const StringTable& strings, const Clock& clock, const SortKeyMaker& makeSortKey,
               TextFolder fold = foldAscii);
    EventTable(const EventTable&) = delete;
    EventTable& operator=(const EventTable&) = delete;

    // ---- What the texts are made from

    // Devices, groups and audio messages are looked up in `directory`. Whether an Event's groups are known is asked of
    // it while `isReady` says that it is complete. Without it devices are shown by address, and every group counts as
    // known.
    void judgeBy(const Directory& directory, std::function<bool()> isReady);
    // Without it Schedules are shown by key.
    void nameSchedulesBy(const ScheduleList& schedules) { source_.schedules = &schedules; }
    // The text of the Problem column, empty for an Event without one, and whether there is one. Without them no Event
    // has.
    void tellProblemsBy(std::function<std::string(const EventRecord&)> text,
                        std::function<bool(const EventRecord&)> hasProblem);

    // The texts of one Event, or of all, may be others although no record has changed. Cost: one Event is worked out
    // anew at once while a filter is set; all of them are when the next filter or sort, or prepareTexts(), needs them.
    void textsChanged(const EventRecord& record);
    void allTextsChanged();
    // Works out texts of up to `most` Events, for a window that is idle. Returns whether any are left.
    bool prepareTexts(std::size_t most) { return texts_.prepare(most); }

    // ---- ListSource

    std::size_t size() const override { return model_.size(); }
    // `column` is an EventColumnId as a number.
    std::string cell(std::size_t row, std::size_t column) const override;

    // ---- EventListObserver

    void eventChanged(const EventRecord& record, bool renamed) override;
    void eventGone(const EventRecord& record) override;
    void eventsCleared() override;

    // ---- Filter, order and selection

    // Shows the Events in which all of `text` is found (see parseFilter()) and which have that state. What it hides is
    // no longer selected. Nothing but blanks and kAll show all. The filter also decides about Events that come or
    // change later.
    void filterBy(std::string_view text, EventState state);

    // Sorts by a column, the column before that as second key, and so on. The name, ascending, is the order at first.
    void sortBy(const EventSortKey& key) { order(&key); }
    // Rows go to where they belong by now.
    void sortAnew() { order(nullptr); }
    // By what the list is sorted, the last choice first; empty in the order at first.
    std::span<const EventSortKey> sortKeys() const { return order_.keys(); }

    // Rows, their numbers and the selection. Filter and order are set above.
    using Model = ListModel<EventRecord>;
    Model& model() { return model_; }
    const Model& model() const { return model_; }
    // The selected Event that stands first; null when none is selected.
    const EventRecord* selectedRecord() const;

    const StringTable& strings() const { return source_.strings; }

  private:
    void insert(const EventRecord& record);
    void order(const EventSortKey* key);

    EventTextSource source_;
    Model model_;
    EventTexts texts_;
    EventOrder order_{model_, texts_};
};

}  // namespace orvc
