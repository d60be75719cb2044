// The list control that shows the Events.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/event_texts.h"
#include "model/event_rows.h"
#include "support/clock.h"
#include "support/string_table.h"

namespace orvc {

// Purpose: shows EventRows in a virtual list control: the control asks for the texts of the rows that it paints, so
// rows cost nothing until they are seen. Thread: user-interface thread. Lifetime: what attach() takes outlives the
// view's use.
class EventListView {
  public:
    EventListView(const EventRows& rows, const StringTable& strings, const Clock& clock);

    // Sets up columns and styles of a list control made with LVS_OWNERDATA.
    void attach(HWND list);

    // Shows what the rows hold by now: only visible rows that changed are painted again. The selected Event stays
    // selected wherever its row is.
    void refresh();
    bool isUpToDate() const { return shownRevision_ == rows_.revision(); }

    // Fits the columns into the list's width at `dpi`.
    void layOutColumns(int dpi);
    // The least width in pixels at which every column title can be read.
    int minimumWidth(int dpi) const;

    // -1 when nothing is selected.
    int selectedRow() const { return selectedRow_; }
    // Null when nothing is selected.
    EventRecord* selectedRecord() const;
    // Selects and focuses a row, or nothing for -1.
    void select(int row);

    // A notification of the control; the value is its result.
    std::optional<LRESULT> onNotify(NMHDR& header);

  private:
    void fillItem(LVITEMA& item);
    int findByPrefix(const NMLVFINDITEMA& request) const;
    void rememberSelection();
    void repaintChangedRows(bool rowsWent);

    const EventRows& rows_;
    const StringTable& strings_;
    const Clock& clock_;
    HWND list_ = nullptr;
    int selectedRow_ = -1;
    const EventRecord* selected_ = nullptr;  // compared with the rows, never followed
    std::uint64_t shownRevision_ = 0;
    bool refreshing_ = false;
    std::string cellText_;
    // What the rows from the control's first visible one on showed at the last refresh.
    int shownFrom_ = 0;
    std::vector<std::string> shownRows_;
};

}  // namespace orvc
