// The list control that shows the Events.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lists/event_table.h"
#include "lists/view_settings.h"
#include "session/bulk_changes.h"
#include "ui/list_view.h"

namespace orvc {

// Purpose: joins an EventTable and its list control: columns, rows, selection and sort.
// Thread: user-interface thread. Lifetime: the table outlives the view.
class EventListView {
  public:
    explicit EventListView(EventTable& table) : table_(table) {}

    // Sets up columns and styles of a list control made with LVS_OWNERDATA. `onSelection` is called, possibly often,
    // when the operator changes the selection.
    void attach(HWND list, const ViewSettings& view, std::function<void()> onSelection);

    // Shows what the rows hold by now. What is selected stays so, wherever its rows are.
    void refresh();
    bool isUpToDate() const { return shownRevision_ == table_.model().revision(); }

    // ---- Columns

    // Fits the columns into the list's width at `dpi`, unless the operator has chosen widths.
    void layOutColumns(int dpi);
    // The smallest list width, in pixels, at which no column title is cut off.
    int minimumWidth(int dpi) const;
    // Shows or hides a column. The name stays.
    void toggleColumn(EventColumnId id);
    // Takes over what the operator has dragged since the columns were laid out: widths, at `dpi`, and order. Returns
    // whether there was anything.
    bool readColumns(int dpi);
    const ViewSettings& view() const { return view_; }
    ViewSettings& view() { return view_; }
    // The EventColumnIds shown, as numbers, from left to right.
    std::vector<std::size_t> shownColumns() const { return list_.columnOrder(); }

    // Sorts by a column: ascending, or descending when it is sorted ascending by it.
    void sortBy(EventColumnId id);
    void sortAgain();

    // ---- Selection

    // Selects and focuses a row, and scrolls it into view; nothing selects nothing.
    void select(std::optional<std::size_t> row);
    // The row that is now where a row was, or the last one; nothing selects nothing.
    void selectNear(std::optional<std::size_t> row);
    void selectAll();
    // The selected Events in the order of their rows, and their keys.
    EventRecords selectedRecords();
    std::vector<std::string> selectedKeys();
    // The selected Event that has the keyboard, else the first one; null when none is selected.
    const EventRecord* focusedRecord();
    bool hasSelection();
    std::optional<std::size_t> focusedRow() const { return list_.focusedRow(); }

    std::optional<LRESULT> onNotify(NMHDR& header) { return list_.onNotify(header); }
    // Which of the table's columns the control's column is.
    EventColumnId columnAt(int column) const {
        return static_cast<EventColumnId>(list_.sourceColumn(static_cast<std::size_t>(column)));
    }
    HWND window() const { return list_.window(); }
    HWND header() const;

  private:
    void makeColumns();
    std::vector<int> currentWidths() const;
    void takeSelection();
    void showSelection();
    void showSort();

    EventTable& table_;
    ViewSettings view_;
    ui::ListView list_;
    std::function<void()> onSelection_;
    std::uint64_t shownRevision_ = 0;
    std::string focusedKey_;        // of the Event that has the keyboard
    bool isSelectionTaken_ = true;  // the table knows what is highlighted
    std::vector<std::size_t> laidOutOrder_;
    std::vector<int> laidOutWidths_;
};

}  // namespace orvc
