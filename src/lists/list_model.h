// The rows of a list, without a window: their order, which of them are shown, and which are selected.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
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
// Each row has a slot: a small number that stays with it until it goes. What a caller keeps for each row is found by
// slot in an array, faster than by record. Slots of rows that went are given out again.
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

    // What is known of a row's place: its slot, and the text that orders it in the given order.
    struct Place {
        Slot slot = 0;
        std::string order;
    };
    // Below 0 when the first row comes before the second, above 0 when it comes after, 0 when the given order decides.
    // The answer for two rows must stay the same until the next arrange(), whatever becomes of their records.
    using Compare = std::function<int(const Place&, const Place&)>;
    // Brings rows, which stand in the given order, into another one.
    using Permute = std::function<void(std::vector<const Place*>&)>;

    // `orderKey` makes the text that orders a record; `keyOf` names a record for good, in a text that lives as long as
    // the record.
    ListModel(OrderKey orderKey, KeyOf keyOf) : orderKey_(std::move(orderKey)), keyOf_(std::move(keyOf)) {}

    // ---- Rows

    // Gives a record its row; nothing happens when it has one.
    void insert(const Record& record) {
        std::string order = orderKey_(record);
        const std::string key(absent_.empty() ? std::string_view() : keyOf_(record));
        if (waiting_ == kMostWaiting) settle();
        // From here on only the node itself can lack memory.
        if (all_.size() == all_.capacity()) all_.reserve(2 * all_.size() + 1);
        if (filter_) shown_.reserve(all_.capacity());
        freeSlots_.reserve(all_.capacity());  // so that erase() needs none
        const auto [place, isNew] = nodes_.try_emplace(&record);
        if (!isNew) return;
        Node& node = place->second;
        node.record = &record;
        node.slot = takeSlot();
        node.order = std::move(order);
        node.serial = ++lastSerial_;
        node.isShown = passes(node);
        node.isSelected = node.isShown && !absent_.empty() && absent_.erase(key) > 0;
        if (node.isSelected) ++selectedCount_;
        all_.push_back(&node);
        ++waiting_;
        changed();
    }

    // The record is about to go: its row goes, and its selection with it.
    void erase(const Record& record) {
        const auto found = nodes_.find(&record);
        if (found == nodes_.end()) return;
        settle();
        take(found->second);
        if (found->second.isSelected) --selectedCount_;
        freeSlots_.push_back(found->second.slot);
        nodes_.erase(found);
        changed();
    }

    // What the row shows has changed. Its place stays, whatever the order; the filter is asked again.
    void update(const Record& record) {
        const auto found = nodes_.find(&record);
        if (found == nodes_.end()) return;
        changed();
        if (!filter_) return;
        const bool isShown = passes(found->second);
        if (isShown == found->second.isShown) return;
        settle();
        setShown(found->second, isShown);
    }

    // What orders the record in the given order has changed: its row goes to where it belongs now.
    void reorder(const Record& record) {
        const auto found = nodes_.find(&record);
        if (found == nodes_.end()) return;
        std::string order = orderKey_(record);
        if (order == found->second.order) return update(record);
        settle();
        Node& node = found->second;
        take(node);
        node.order = std::move(order);
        node.serial = ++lastSerial_;
        node.isShown = passes(node);
        put(node);
        changed();
    }

    // Every record is about to go. What was selected is selected again when a record of its key comes.
    void clear() {
        for (const Node* node : all_)
            if (node->isSelected) absent_.emplace(keyOf_(*node->record));
        nodes_.clear();
        all_.clear();
        shown_.clear();
        freeSlots_.clear();
        slotCount_ = 0;
        waiting_ = 0;
        selectedCount_ = 0;
        changed();
    }

    bool contains(const Record& record) const { return nodes_.contains(&record); }
    // Nothing when the record has no row.
    std::optional<Slot> slotOf(const Record& record) const {
        const auto found = nodes_.find(&record);
        return found != nodes_.end() ? std::optional(found->second.slot) : std::nullopt;
    }
    // Every slot is below this one, also that of the next row to come.
    Slot slotEnd() const { return slotCount_ + 1; }

    // ---- Order and filter

    // Sets up another order, or the given one when `compare` is empty. `permute` puts the rows into it all at once, and
    // `compare` finds the place of a row that comes later, so both must mean the same order. When `permute` returns,
    // the new order is in use. `renamed` are rows whose text in the given order is another one by now.
    void arrange(Compare compare, const Permute& permute, std::span<const Record* const> renamed = {}) {
        settle();
        std::vector<Renewed> renewed = renew(renamed);
        const auto swapOrders = [&] {
            for (Renewed& each : renewed) {
                each.node->order.swap(each.order);
                std::swap(each.node->serial, each.serial);
            }
        };
        swapOrders();
        try {
            Nodes sorted = inGivenOrder();
            if (permute) sorted = permuted(sorted, permute);
            std::ranges::copy(sorted, all_.begin());
        } catch (...) {
            swapOrders();
            throw;
        }
        compare_ = std::move(compare);
        rebuildShown();
        changed();
    }

    // Shows only the records that `filter` accepts; an empty one shows all. What it hides is no longer selected.
    void filterBy(Filter filter) {
        settle();
        shown_.reserve(all_.capacity());
        filter_ = std::move(filter);
        filterAnew();
    }
    // What the filter says may be something else for any row.
    void filterAnew() {
        settle();
        for (Node* node : all_) {
            node->isShown = passes(*node);
            if (!node->isShown) deselect(*node);
        }
        rebuildShown();
        changed();
    }

    // ---- What is shown

    // Rows that are shown, and all.
    std::size_t size() const { return filter_ ? (settle(), shown_.size()) : all_.size(); }
    std::size_t total() const { return all_.size(); }

    // `row` is less than size(). Valid until the next change.
    const Record& at(std::size_t row) const {
        settle();
        return *rows()[row]->record;
    }

    // The record's row; nothing when it has none or is not shown.
    std::optional<std::size_t> rowOf(const Record& record) const {
        const auto found = nodes_.find(&record);
        if (found == nodes_.end() || !found->second.isShown) return std::nullopt;
        settle();
        return static_cast<std::size_t>(placeOf(rows(), found->second) - rows().begin());
    }

    // ---- Selection

    bool isSelected(std::size_t row) const {
        settle();
        return rows()[row]->isSelected;
    }
    std::size_t selectedCount() const { return selectedCount_; }
    // The first selected row; nothing when none is.
    std::optional<std::size_t> firstSelected() const {
        if (selectedCount_ == 0) return std::nullopt;
        settle();
        const auto found = std::ranges::find_if(rows(), [](const Node* node) { return node->isSelected; });
        if (found == rows().end()) return std::nullopt;
        return static_cast<std::size_t>(found - rows().begin());
    }
    void setSelected(std::size_t row, bool selected) {
        settle();
        Node& node = *rows()[row];
        if (node.isSelected == selected) return;
        node.isSelected = selected;
        selectedCount_ += selected ? 1 : static_cast<std::size_t>(-1);
    }
    // The same for `count` rows from `first` on.
    void setSelected(std::size_t first, std::size_t count, bool selected) {
        for (std::size_t row = first; row < first + count; ++row)
            setSelected(row, selected);
    }
    // Every row that is shown.
    void selectAll() { setSelected(0, size(), true); }
    // In the order of the rows. Valid until the next change.
    std::vector<const Record*> selectedRecords() const {
        std::vector<const Record*> records;
        if (selectedCount_ == 0) return records;
        settle();
        records.reserve(selectedCount_);
        for (const Node* node : rows())
            if (node->isSelected) records.push_back(node->record);
        return records;
    }
    // Selects that row alone, or none.
    void selectOnly(std::optional<std::size_t> row) {
        absent_.clear();
        for (std::size_t i = 0; selectedCount_ > 0 && i < all_.size(); ++i)
            deselect(*all_[i]);
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

    struct Node : Place {
        const Record* record = nullptr;
        std::uint64_t serial = 0;  // of equal orders the higher one comes first
        bool isShown = true;
        bool isSelected = false;
    };
    using Nodes = std::vector<Node*>;

    bool comesBefore(const Node* a, const Node* b) const {
        int compared = compare_ ? compare_(*a, *b) : 0;
        if (compared == 0) compared = a->order.compare(b->order);
        return compared != 0 ? compared < 0 : a->serial > b->serial;
    }
    auto order() const {
        return [this](const Node* a, const Node* b) { return comesBefore(a, b); };
    }
    auto placeOf(Nodes& nodes, const Node& node) const {
        return std::lower_bound(nodes.begin(), nodes.end(), &node, order());
    }

    Nodes& rows() const { return filter_ ? shown_ : all_; }
    bool passes(const Node& node) const { return !filter_ || filter_(*node.record, node.slot); }

    Slot takeSlot() {
        if (freeSlots_.empty()) return slotCount_++;
        const Slot slot = freeSlots_.back();
        freeSlots_.pop_back();
        return slot;
    }

    void changed() {
        ++revision_;
        if (observer_) observer_();
    }
    void deselect(Node& node) {
        if (node.isSelected) --selectedCount_;
        node.isSelected = false;
    }

    // The rows are settled in these four.
    void take(const Node& node) {
        if (filter_ && node.isShown) shown_.erase(placeOf(shown_, node));
        all_.erase(placeOf(all_, node));
    }
    void put(Node& node) {  // where take() left space
        all_.insert(placeOf(all_, node), &node);
        if (!node.isShown) deselect(node);
        if (filter_ && node.isShown) shown_.insert(placeOf(shown_, node), &node);
    }
    void setShown(Node& node, bool isShown) {
        if (isShown)
            shown_.insert(placeOf(shown_, node), &node);
        else
            shown_.erase(placeOf(shown_, node));
        node.isShown = isShown;
        if (!isShown) deselect(node);
    }
    void rebuildShown() const {
        shown_.clear();
        if (filter_)
            std::ranges::copy_if(all_, std::back_inserter(shown_), [](const Node* node) { return node->isShown; });
    }

    // A row whose text in the given order is another one now, and counts as the last that came.
    struct Renewed {
        Node* node;
        std::string order;
        std::uint64_t serial;
    };
    std::vector<Renewed> renew(std::span<const Record* const> renamed) {
        std::vector<Renewed> renewed;
        renewed.reserve(renamed.size());
        for (const Record* record : renamed) {
            const auto found = nodes_.find(record);
            if (found == nodes_.end()) continue;
            std::string order = orderKey_(*record);
            if (order != found->second.order) renewed.push_back({&found->second, std::move(order), ++lastSerial_});
        }
        return renewed;
    }
    Nodes inGivenOrder() const {
        Nodes nodes = all_;
        sortByText(
            nodes, [](const Node* node) -> const std::string& { return node->order; },
            [](const Node* a, const Node* b) { return a->serial > b->serial; });
        return nodes;
    }
    static Nodes permuted(const Nodes& nodes, const Permute& permute) {
        Nodes sorted(nodes.size());
        std::vector<const Place*> places(nodes.begin(), nodes.end());
        permute(places);
        std::ranges::transform(places, sorted.begin(),
                               [](const Place* place) { return static_cast<Node*>(const_cast<Place*>(place)); });
        return sorted;
    }

    void settle() const {
        if (waiting_ != 0) settleWaiting();
    }
    // Cannot fail for lack of memory.
    void settleWaiting() const {
        mergeTail<kMostWaiting>(all_, waiting_, order());
        waiting_ = 0;
        if (filter_) rebuildShown();
    }

    OrderKey orderKey_;
    KeyOf keyOf_;
    Compare compare_;  // empty: the given order
    Filter filter_;
    std::function<void()> observer_;
    std::unordered_map<const Record*, Node> nodes_;
    mutable Nodes all_;    // in order, but for the last `waiting_`
    mutable Nodes shown_;  // in order; used only with a filter
    mutable std::size_t waiting_ = 0;
    std::vector<Slot> freeSlots_;
    Slot slotCount_ = 0;
    std::unordered_set<std::string> absent_;  // keys of selected records that are not there
    std::size_t selectedCount_ = 0;
    std::uint64_t lastSerial_ = 0;
    std::uint64_t revision_ = 0;
};

}  // namespace orvc
