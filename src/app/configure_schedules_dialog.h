// The schedule list's window; which rows it shows is ScheduleRows' knowledge.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "editors/schedule/schedule_edit.h"
#include "editors/schedule/schedule_rows.h"
#include "resources/resource.h"
#include "win32/dialog.h"

namespace orvc {

// Purpose: lists the Schedules and has them made, changed and taken off the list.
// Thread: user-interface thread. Lifetime: `schedules` outlives the dialog; its records may come, change and go while
// the dialog is open, and the rows follow.
class CConfigureSchedulesDlg final : public win32::Dialog {
  public:
    CConfigureSchedulesDlg(const win32::Resources& resources, ScheduleList& schedules, SortKeyMaker makeSortKey);

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;
    bool onTimer(std::uintptr_t timer) override;
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    void insertColumns();
    void setColumnWidths();
    // In pixels.
    int columnWidth(std::size_t index) const;
    void fitToColumns();
    void focusFirstRow();

    void newSchedule();
    void modifySchedule();
    void deleteRow();
    void edit(ScheduleEdit edit);

    void select(int row);
    void refresh();
    void showRows();
    void highlight(std::optional<std::size_t> row);
    int highlightedRow() const;
    void enableButtons();
    void fillItem(LVITEMA& item) const;

    HWND list() const { return control(IDC_SCHEDULE_LIST); }

    ScheduleList& schedules_;
    ScheduleRows rows_;
    bool showing_ = false;  // the control is changed by us, not by the operator
};

}  // namespace orvc
