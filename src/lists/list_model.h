// The rows of a list, without a window: their order, which of them are shown, and which are selected.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orvc {

// Purpose: knows which record stands in which row. Knows no window, no control, no language.
//
// A row is named by the address of its record, which outlives the row; a selection by the record's key, so that it
// survives when the records are freed and come again. Rows are ordered by a text that the caller makes of each record,
// compared byte by byte; of equal texts the row that came last comes first.
//
// Rows that come in bursts wait and find their places together, a few hundred at a time, at the latest when somebody
// asks for a row: one at a time, each of a hundred thousand would move half of the others.
//
// Thread: user-interface thread. Cost: a look-up takes the logarithm of the rows; a row that comes or goes moves the
// rows after it; a filter or an order looks at each row once.
// Errors: insert(), reorder() and orderBy() throw std::bad_alloc and change nothing then. Nothing else needs memory but
// the selection.
template <typename Record>
class ListModel {
  public:
    using OrderKey = std::function<std::string(const Record&)>;
    using Filter = std::function<bool(const Record&)>;
    using KeyOf = std::function<std::string_view(const Record&)>;

    // `orderKey` makes the text that orders a record; `keyOf` names a record for good, in a text that lives as long as
    // the record.
    ListModel(OrderKey orderKey, KeyOf keyOf) : orderKey_(std::move(orderKey)), keyOf_(std::move(keyOf)) {}

    // ---- Rows

    // Gives a record its row; nothing happens when it has one.
    void insert(const Record& record) {
        std::string order = orderKey_(record);
        if (waiting_ == kMostWaiting) settle();
        // From here on only the node itself can lack memory.
        if (all_.size() == all_.capacity()) all_.reserve(2 * all_.size() + 1);
        if (filter_) shown_.reserve(all_.capacity());
        const auto [place, isNew] = nodes_.try_emplace(&record);
        if (!isNew) return;
        Node& node = place->second;
        node.record = &record;
        node.order = std::move(order);
        node.serial = ++lastSerial_;
        node.isShown = passes(record);
        node.isSelected = node.isShown && !absent_.empty() && absent_.erase(std::string(keyOf_(record))) > 0;
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
        nodes_.erase(found);
        changed();
    }

    // What the row shows has changed. Its place stays, whatever the order; the filter is asked again.
    void update(const Record& record) {
        const auto found = nodes_.find(&record);
        if (found == nodes_.end()) return;
        changed();
        if (!filter_) return;
        const bool isShown = passes(record);
        if (isShown == found->second.isShown) return;
        settle();
        setShown(found->second, isShown);
    }

    // What orders the record has changed: its row goes to where it belongs now.
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
        node.isShown = passes(record);
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
        waiting_ = 0;
        selectedCount_ = 0;
        changed();
    }

    bool contains(const Record& record) const { return nodes_.contains(&record); }

    // ---- Order and filter

    // Sorts all rows by another text. Rows of equal texts keep their order.
    void orderBy(OrderKey orderKey) {
        settle();
        std::vector<std::string> orders;
        orders.reserve(all_.size());
        for (const Node* node : all_)
            orders.push_back(orderKey(*node->record));
        for (std::size_t i = 0; i < all_.size(); ++i)
            all_[i]->order.swap(orders[i]);
        std::stable_sort(all_.begin(), all_.end(), [](const Node* a, const Node* b) { return a->order < b->order; });
        // Later insertions find their places by order and serial: number the rows as they stand.
        lastSerial_ = all_.size();
        for (std::size_t i = 0; i < all_.size(); ++i)
            all_[i]->serial = all_.size() - i;
        orderKey_ = std::move(orderKey);
        rebuildShown();
        changed();
    }

    // Shows only the records that `filter` accepts; an empty one shows all. What it hides is no longer selected.
    void filterBy(Filter filter) {
        settle();
        shown_.reserve(all_.capacity());
        filter_ = std::move(filter);
        for (Node* node : all_) {
            node->isShown = passes(*node->record);
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

    struct Node {
        const Record* record = nullptr;
        std::string order;
        std::uint64_t serial = 0;  // of equal orders the higher one comes first
        bool isShown = true;
        bool isSelected = false;
    };
    using Nodes = std::vector<Node*>;

    static bool comesBefore(const Node* a, const Node* b) {
        const int compared = a->order.compare(b->order);
        return compared != 0 ? compared < 0 : a->serial > b->serial;
    }
    template <typename NodesOrConst>
    static auto placeOf(NodesOrConst& nodes, const Node& node) {
        return std::lower_bound(nodes.begin(), nodes.end(), &node, comesBefore);
    }

    Nodes& rows() const { return filter_ ? shown_ : all_; }
    bool passes(const Record& record) const { return !filter_ || filter_(record); }

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

    void settle() const {
        if (waiting_ != 0) settleWaiting();
    }
    // Cannot fail for lack of memory.
    void settleWaiting() const {
        std::array<Node*, kMostWaiting> came;
        const auto settled = static_cast<std::ptrdiff_t>(all_.size() - waiting_);
        const auto cameEnd = std::copy(all_.begin() + settled, all_.end(), came.begin());
        std::sort(came.begin(), cameEnd, comesBefore);
        // From the last one on: all rows between two of them move up together.
        auto end = all_.begin() + settled;
        auto to = all_.end();
        for (auto node = cameEnd; node != came.begin();) {
            --node;
            const auto place = std::lower_bound(all_.begin(), end, *node, comesBefore);
            to = std::move_backward(place, end, to);
            *--to = *node;
            end = place;
        }
        waiting_ = 0;
        if (filter_) rebuildShown();
    }

    OrderKey orderKey_;
    KeyOf keyOf_;
    Filter filter_;
    std::function<void()> observer_;
    std::unordered_map<const Record*, Node> nodes_;
    mutable Nodes all_;    // in order, but for the last `waiting_`
    mutable Nodes shown_;  // in order; used only with a filter
    mutable std::size_t waiting_ = 0;
    std::unordered_set<std::string> absent_;  // keys of selected records that are not there
    std::size_t selectedCount_ = 0;
    std::uint64_t lastSerial_ = 0;
    std::uint64_t revision_ = 0;
};

}  // namespace orvc
