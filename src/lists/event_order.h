// In which order the Events are listed.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "lists/event_columns.h"
#include "lists/event_texts.h"
#include "lists/list_model.h"

namespace orvc {

struct EventSortKey {
    EventColumnId column = EventColumnId::kName;
    bool descending = false;

    friend bool operator==(const EventSortKey&, const EventSortKey&) = default;
};

// Purpose: sorts a list of Events by its columns, and remembers what each row held when it found its place: rows stay
// where they are when their Events change.
// Thread: user-interface thread. Lifetime: `model` and `texts` outlive it.
class EventOrder {
  public:
    using Model = ListModel<EventRecord>;
    using Slot = Model::Slot;

    EventOrder(Model& model, EventTexts& texts) : model_(model), texts_(texts) {}

    // The columns, the last one chosen first; none is the given order, by name. Rows that are the same in all of them
    // stand in the given order.
    std::span<const EventSortKey> keys() const { return keys_; }
    bool isGiven() const { return keys_.empty(); }

    // Sorts by a column before all others. The name, ascending, is the given order. Throws std::bad_alloc and changes
    // nothing then.
    void sortBy(const EventSortKey& key);
    // Sorts by what the Events hold now. Throws std::bad_alloc and changes nothing then.
    void sortAnew();

    // ---- Rows come and go

    // To be called before a row comes into that slot. Throws std::bad_alloc.
    void makeRoom(Slot slot);
    // Remembers what the row holds. Throws std::bad_alloc; the row then counts as one that holds nothing.
    void came(Slot slot);
    void gone(Slot slot);
    void clear() {
        placed_.clear();
        given_ = {};
    }

    // What all rows held when they found their places, by slot.
    std::span<EventValues> placed() { return placed_; }

  private:
    using Numbers = std::vector<std::uint32_t>;
    using Slots = std::vector<Slot>;
    using Records = std::span<const EventRecord* const>;

    void arrange(std::vector<EventSortKey> keys);
    void permute(Slots& slots, std::vector<EventSortKey>& keys, Records renamed);
    Numbers numbersOf(EventColumnId column, const std::vector<EventValues>& values);
    Numbers rankTexts(std::size_t index, const std::vector<EventValues>& values);
    int compare(Slot a, Slot b) const;
    int compareBy(EventColumnId column, Slot a, Slot b) const;

    Model& model_;
    EventTexts& texts_;
    std::vector<EventSortKey> keys_;
    std::vector<EventValues> placed_;  // by slot; empty in the given order

    // Where each row stands in the given order, by slot, so that names are compared once only while the list is sorted
    // by one column after the other. Rows that went leave gaps. In the given order itself nothing is kept.
    static constexpr std::uint32_t kNew = 0xFFFFFFFF;  // not known yet
    struct Given {
        Numbers positions;
        Numbers names;  // the same for equal names; empty until the list is sorted by name and another column
    };
    Given readGiven(const Slots& slots, Records renamed) const;
    // By slot, of slots in the given order.
    Numbers numberNames(const Slots& slots) const;
    Given given_;
};

}  // namespace orvc
