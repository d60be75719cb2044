// The rows of a list, without a window: their order, which of them are shown, and which are selected.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "lists/row_sort.h"

namespace orvc {

// Purpose: knows which record stands in which row. Knows no window, no control, no language.
//
// A row is named by the address of its record, which outlives the row; a selection by the record's key, so that it
// survives when the records are freed and come again. The given order is that of a text that the caller makes of each
// record, compared byte by byte; of equal texts the row that came last comes first. arrange() sets up any other order.
//
// Each row has a slot: a small number that stays with it until it goes. What is known of each row lies in arrays by
// slot, here and with the caller: a pass over ten thousands of rows then touches little memory. Slots of rows that went
// are given out again.
//
// Rows that come in bursts wait and find their places together, a few hundred at a time, at the latest when somebody
// asks for a row: one at a time, each of a hundred thousand would move half of the others.
//
// Thread: user-interface thread. Cost: a look-up takes the logarithm of the rows; a row that comes or goes moves the
// rows after it; a filter or an order looks at each row once.
// Errors: insert(), reorder(), arrange() and filterBy() throw std::bad_alloc and change nothing then. Nothing else
// needs memory but the selection. A Filter and a Compare never throw.
template <typename Record>
class ListModel {
  public:
    using Slot = std::uint32_t;
    using OrderKey = std::function<std::string(const Record&)>;
    using Filter = std::function<bool(const Record&, Slot)>;
    using KeyOf = std::function<std::string_view(const Record&)>;
    // Below 0 when the row of the first slot comes before that of the second, above 0 when it comes after, 0 when the
    // given order decides. The answer stays the same until the next arrange(), whatever becomes of the records.
    using Compare = std::function<int(Slot, Slot)>;
    // Brings slots of rows, as they stand, into another order.
    using Permute = std::function<void(std::vector<Slot>&)>;

    // `orderKey` makes the text that orders a record; `keyOf` names a record for good, in a text that lives as long as
    // the record.
    ListModel(OrderKey orderKey, KeyOf keyOf) : orderKey_(std::move(orderKey)), keyOf_(std::move(keyOf)) {}

    // ---- Rows

    // Gives a record its row; nothing happens when it has one.
    void insert(const Record& record) {
        std::string order = orderKey_(record);
        const std::string key(absent_.empty() ? std::string_view() : keyOf_(record));
        if (waiting_ == kMostWaiting) settle();
        makeRoom();
        const Slot slot = nextSlot();
        // From here on only this can lack memory.
        if (!slots_.try_emplace(&record, slot).second) return;
        if (!freeSlots_.empty()) freeSlots_.pop_back();
        rows_[slot] = {std::move(order), ++lastSerial_};
        records_[slot] = &record;
        isShown_[slot] = passes(slot);
        isSelected_[slot] = isShown_[slot] && !absent_.empty() && absent_.erase(key) > 0;
        if (isSelected_[slot]) ++selectedCount_;
        all_.push_back(slot);
        ++waiting_;
        changed();
    }

    // The record is about to go: its row goes, and its selection with it.
    void erase(const Record& record) {
        const auto found = slots_.find(&record);
        if (found == slots_.end()) return;
        const Slot slot = found->second;
        settle();
        take(slot);
        deselect(slot);
        freeSlots_.push_back(slot);
        records_[slot] = nullptr;
        slots_.erase(found);
        changed();
    }

    // What the row shows has changed. Its place stays, whatever the order; the filter is asked again.
    void update(const Record& record) {
        const auto slot = slotOf(record);
        if (!slot) return;
        changed();
        if (!filter_) return;
        const bool isShown = passes(*slot);
        if (isShown == isShown_[*slot]) return;
        settle();
        setShown(*slot, isShown);
    }

    // What orders the record in the given order has changed: its row goes to where it belongs now.
    void reorder(const Record& record) {
        const auto slot = slotOf(record);
        if (!slot) return;
        std::string order = orderKey_(record);
        if (order == rows_[*slot].order) return update(record);
        settle();
        take(*slot);
        rows_[*slot] = {std::move(order), ++lastSerial_};
        isShown_[*slot] = passes(*slot);
        put(*slot);
        changed();
    }

    // Every record is about to go. What was selected is selected again when a record of its key comes.
    void clear() {
        for (const Slot slot : all_)
            if (isSelected_[slot]) absent_.emplace(keyOf_(*records_[slot]));
        slots_.clear();
        rows_.clear();
        records_.clear();
        isShown_.clear();
        isSelected_.clear();
        freeSlots_.clear();
        all_.clear();
        shown_.clear();
        waiting_ = 0;
        selectedCount_ = 0;
        changed();
    }

    bool contains(const Record& record) const { return slots_.contains(&record); }
    // Nothing when the record has no row.
    std::optional<Slot> slotOf(const Record& record) const {
        const auto found = slots_.find(&record);
        return found != slots_.end() ? std::optional(found->second) : std::nullopt;
    }
    // The slot that the next row to come will have.
    Slot nextSlot() const { return freeSlots_.empty() ? static_cast<Slot>(all_.size()) : freeSlots_.back(); }
    // Every slot in use is below this one.
    Slot slotEnd() const { return static_cast<Slot>(all_.size() + freeSlots_.size()); }

    // ---- Order and filter

    // Sets up another order. `permute` puts the rows into it all at once, and `compare` finds the place of a row that
    // comes later, so both must mean the same order; an empty `compare` means the given one. When `permute` returns,
    // the new order is in use. `renamed` are rows whose text in the given order is another one by now.
    void arrange(Compare compare, const Permute& permute, std::span<const Record* const> renamed = {}) {
        settle();
        std::vector<std::pair<Slot, Row>> renewed = renew(renamed);
        std::vector<Slot> sorted = all_;
        const auto swapRows = [&] {
            for (auto& [slot, row] : renewed)
                std::swap(rows_[slot], row);
        };
        swapRows();
        try {
            permute(sorted);
        } catch (...) {
            swapRows();
            throw;
        }
        std::ranges::copy(sorted, all_.begin());
        compare_ = std::move(compare);
        rebuildShown();
        changed();
    }
    // Brings rows into the given order, of which the first `settled` stand in it already. Throws std::bad_alloc and
    // changes nothing then.
    void sortAsGiven(std::vector<Slot>& slots, std::size_t settled = 0) const {
        constexpr std::size_t kManyMore = 8;
        if (settled > kManyMore * (slots.size() - settled)) {
            std::vector<Slot> came(slots.begin() + static_cast<std::ptrdiff_t>(settled), slots.end());
            mergeTail(slots, std::span(came), [this](Slot a, Slot b) { return isGivenBefore(a, b); });
        } else {
            sortByText(
                slots, [this](Slot slot) -> const std::string& { return orderOf(slot); },
                [this](Slot a, Slot b) { return rows_[a].serial > rows_[b].serial; });
        }
    }
    // The text by which a row is placed in the given order.
    const std::string& orderOf(Slot slot) const { return rows_[slot].order; }

    // Shows only the records that `filter` accepts; an empty one shows all. What it hides is no longer selected.
    void filterBy(Filter filter) {
        shown_.reserve(all_.capacity());
        filter_ = std::move(filter);
        filterAnew();
    }
    // What the filter says may be something else for any row.
    void filterAnew() {
        settle();
        for (const Slot slot : all_) {
            isShown_[slot] = passes(slot);
            if (!isShown_[slot]) deselect(slot);
        }
        rebuildShown();
        changed();
    }

    // ---- What is shown

    // Rows that are shown, and all.
    std::size_t size() const { return filter_ ? (settle(), shown_.size()) : all_.size(); }
    std::size_t total() const { return all_.size(); }

    // `row` is less than size(). Valid until the next change.
    const Record& at(std::size_t row) const { return *records_[slotAt(row)]; }

    // The record's row; nothing when it has none or is not shown.
    std::optional<std::size_t> rowOf(const Record& record) const {
        const auto slot = slotOf(record);
        if (!slot || !isShown_[*slot]) return std::nullopt;
        settle();
        return static_cast<std::size_t>(placeOf(shownSlots(), *slot) - shownSlots().begin());
    }

    // ---- Selection

    bool isSelected(std::size_t row) const { return isSelected_[slotAt(row)]; }
    std::size_t selectedCount() const { return selectedCount_; }
    // The first selected row; nothing when none is.
    std::optional<std::size_t> firstSelected() const {
        if (selectedCount_ == 0) return std::nullopt;
        settle();
        const auto found = std::ranges::find_if(shownSlots(), [this](Slot slot) { return isSelected_[slot]; });
        if (found == shownSlots().end()) return std::nullopt;
        return static_cast<std::size_t>(found - shownSlots().begin());
    }
    // In the order of the rows. Valid until the next change.
    std::vector<const Record*> selectedRecords() const {
        std::vector<const Record*> records;
        if (selectedCount_ == 0) return records;
        settle();
        records.reserve(selectedCount_);
        for (const Slot slot : shownSlots())
            if (isSelected_[slot]) records.push_back(records_[slot]);
        return records;
    }
    void setSelected(std::size_t row, bool selected) {
        const Slot slot = slotAt(row);
        if (isSelected_[slot] == selected) return;
        isSelected_[slot] = selected;
        selectedCount_ += selected ? 1 : static_cast<std::size_t>(-1);
    }
    // The same for `count` rows from `first` on.
    void setSelected(std::size_t first, std::size_t count, bool selected) {
        for (std::size_t row = first; row < first + count; ++row)
            setSelected(row, selected);
    }
    // Every row that is shown.
    void selectAll() { setSelected(0, size(), true); }
    // Selects that row alone, or none.
    void selectOnly(std::optional<std::size_t> row) {
        absent_.clear();
        for (std::size_t i = 0; selectedCount_ > 0 && i < all_.size(); ++i)
            deselect(all_[i]);
        if (row) setSelected(*row, true);
    }

    // ---- Changes

    // Grows with every change of a row or of what it shows, so that a window repaints once for many.
    std::uint64_t revision() const { return revision_; }
    // Calls `observer` at each such change. It must not change the rows.
    void observe(std::function<void()> observer) { observer_ = std::move(observer); }
    // What all rows show may have changed.
    void touch() { changed(); }

  private:
    static constexpr std::size_t kMostWaiting = 256;

    struct Row {
        std::string order;
        std::uint64_t serial = 0;  // of equal orders the higher one comes first
    };
    using Slots = std::vector<Slot>;

    // For one more row. What was made before memory ran out does no harm.
    void makeRoom() {
        const std::size_t most = all_.capacity() > all_.size() ? all_.capacity() : 2 * all_.size() + 1;
        if (filter_) shown_.reserve(most);
        freeSlots_.reserve(most);  // so that erase() needs none
        if (freeSlots_.empty() && rows_.size() == all_.size()) {
            records_.reserve(most);
            isShown_.reserve(most);
            isSelected_.reserve(most);
            rows_.emplace_back();
            records_.resize(rows_.size());
            isShown_.resize(rows_.size());
            isSelected_.resize(rows_.size());
        }
        all_.reserve(most);
    }

    bool isGivenBefore(Slot a, Slot b) const {
        const int compared = orderOf(a).compare(orderOf(b));
        return compared != 0 ? compared < 0 : rows_[a].serial > rows_[b].serial;
    }
    bool comesBefore(Slot a, Slot b) const {
        const int compared = compare_ ? compare_(a, b) : 0;
        return compared != 0 ? compared < 0 : isGivenBefore(a, b);
    }
    auto order() const {
        return [this](Slot a, Slot b) { return comesBefore(a, b); };
    }
    auto placeOf(Slots& slots, Slot slot) const { return std::lower_bound(slots.begin(), slots.end(), slot, order()); }

    Slots& shownSlots() const { return filter_ ? shown_ : all_; }
    Slot slotAt(std::size_t row) const {
        settle();
        return shownSlots()[row];
    }
    bool passes(Slot slot) const { return !filter_ || filter_(*records_[slot], slot); }

    void changed() {
        ++revision_;
        if (observer_) observer_();
    }
    void deselect(Slot slot) {
        if (isSelected_[slot]) --selectedCount_;
        isSelected_[slot] = false;
    }

    // The rows are settled in these four.
    void take(Slot slot) {
        if (filter_ && isShown_[slot]) shown_.erase(placeOf(shown_, slot));
        all_.erase(placeOf(all_, slot));
    }
    void put(Slot slot) {  // where take() left space
        all_.insert(placeOf(all_, slot), slot);
        if (!isShown_[slot]) deselect(slot);
        if (filter_ && isShown_[slot]) shown_.insert(placeOf(shown_, slot), slot);
    }
    void setShown(Slot slot, bool isShown) {
        if (isShown)
            shown_.insert(placeOf(shown_, slot), slot);
        else
            shown_.erase(placeOf(shown_, slot));
        isShown_[slot] = isShown;
        if (!isShown) deselect(slot);
    }
    void rebuildShown() const {
        shown_.clear();
        if (filter_)
            std::ranges::copy_if(all_, std::back_inserter(shown_), [this](Slot slot) { return isShown_[slot]; });
    }

    // What is known of those rows whose order is another one by now. They count as the last that came.
    std::vector<std::pair<Slot, Row>> renew(std::span<const Record* const> renamed) {
        std::vector<std::pair<Slot, Row>> renewed;
        renewed.reserve(renamed.size());
        for (const Record* record : renamed) {
            const auto slot = slotOf(*record);
            if (!slot) continue;
            std::string order = orderKey_(*record);
            if (order != orderOf(*slot)) renewed.push_back({*slot, {std::move(order), ++lastSerial_}});
        }
        return renewed;
    }

    // Cannot fail for lack of memory.
    void settle() const {
        if (waiting_ == 0) return;
        std::array<Slot, kMostWaiting> came;
        std::copy(all_.end() - static_cast<std::ptrdiff_t>(waiting_), all_.end(), came.begin());
        mergeTail(all_, std::span(came).first(waiting_), order());
        waiting_ = 0;
        if (filter_) rebuildShown();
    }

    OrderKey orderKey_;
    KeyOf keyOf_;
    Compare compare_;  // empty: the given order
    Filter filter_;
    std::function<void()> observer_;
    std::unordered_map<const Record*, Slot> slots_;
    // By slot.
    std::deque<Row> rows_;
    std::vector<const Record*> records_;  // null: the slot is free
    std::vector<char> isShown_;
    std::vector<char> isSelected_;
    Slots freeSlots_;
    mutable Slots all_;    // in order, but for the last `waiting_`
    mutable Slots shown_;  // in order; used only with a filter
    mutable std::size_t waiting_ = 0;
    std::unordered_set<std::string> absent_;  // keys of selected records that are not there
    std::size_t selectedCount_ = 0;
    std::uint64_t lastSerial_ = 0;
    std::uint64_t revision_ = 0;
};

}  // namespace orvc
