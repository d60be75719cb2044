// The list control that shows the Events.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "lists/event_table.h"
#include "ui/list_view.h"

namespace orvc {

// Purpose: joins an EventTable and its list control: columns, rows and the selection.
// Thread: user-interface thread. Lifetime: the table outlives the view.
class EventListView {
  public:
    explicit EventListView(EventTable& table) : table_(table) {}

    // Sets up columns and styles of a list control made with LVS_OWNERDATA.
    void attach(HWND list);

    // Shows what the rows hold by now. The selected Event stays selected wherever its row is.
    void refresh();
    bool isUpToDate() const { return shownRevision_ == table_.model().revision(); }

    // Fits the columns into the list's width at `dpi`.
    void layOutColumns(int dpi);
    // The smallest list width, in pixels, at which no column title is cut off.
    int minimumWidth(int dpi) const;

    // Selects and focuses a row, and scrolls it into view; nothing selects nothing.
    void select(std::optional<std::size_t> row);

    std::optional<LRESULT> onNotify(NMHDR& header) { return list_.onNotify(header); }
    HWND window() const { return list_.window(); }

  private:
    EventTable& table_;
    ui::ListView list_;
    std::uint64_t shownRevision_ = 0;
};

}  // namespace orvc
