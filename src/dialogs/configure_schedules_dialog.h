// The schedule list's window; which rows it shows is ScheduleRows' knowledge.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>

#include "editors/schedule/schedule_edit.h"
#include "lists/schedule_table.h"
#include "resources/resource.h"
#include "ui/dialog.h"
#include "ui/list_view.h"

namespace orvc {

// Purpose: lists the Schedules and has them made, changed and taken off the list.
// Thread: user-interface thread. Lifetime: `schedules` outlives the dialog; its records may come, change and go while
// the dialog is open, and the rows follow.
class CConfigureSchedulesDlg final : public ui::Dialog {
  public:
    // `apply` carries a change out.
    CConfigureSchedulesDlg(const ui::Resources& resources, ScheduleList& schedules, SortKeyMaker makeSortKey,
                           std::function<void(Change change)> apply);

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;
    bool onTimer(std::uintptr_t timer) override;
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    void setColumnWidths();
    // In pixels.
    int columnWidth(std::size_t index) const;
    void fitToColumns();

    void newSchedule();
    void modifySchedule();
    void deleteRow();
    // Returns whether it was saved.
    bool edit(ScheduleEdit& edit);

    void select(int row);
    void refresh();
    void showRows();
    void enableButtons();

    ScheduleList& schedules_;
    std::function<void(Change)> apply_;
    ScheduleTable rows_;
    ui::ListView list_;
};

}  // namespace orvc
