// The schedule list's window; which rows it shows is ScheduleRows' knowledge.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/link_note.h"
#include "editors/schedule/schedule_edit.h"
#include "lists/schedule_table.h"
#include "resources/resource.h"
#include "ui/dialog.h"
#include "ui/list_view.h"

namespace orvc {

// What the dialog asks of the rest of the console; callable as long as the dialog is open.
struct ScheduleCommands {
    std::function<void(Change change)> apply;
    // The names of the Events that use the Schedule with that key, and how many they are.
    std::function<std::vector<std::string>(const std::string& key)> userNames;
    std::function<std::size_t(const std::string& key)> countUsers;
    // Deletes the Schedule on the server. Events that use it get the other one first; with one that could not get it,
    // the Schedule stays.
    std::function<void(const ScheduleRecord& record, const std::string& otherKey)> deleteOnServer;
    LinkNote linkNote;
};

// Purpose: lists the Schedules and who uses them, and has them made, changed, taken off the list, and deleted.
// Thread: user-interface thread. Lifetime: `schedules` outlives the dialog; its records may come, change and go while
// the dialog is open, and the rows follow.
class CConfigureSchedulesDlg final : public ui::Dialog {
  public:
    CConfigureSchedulesDlg(const ui::Resources& resources, ScheduleList& schedules, SortKeyMaker makeSortKey,
                           ScheduleCommands commands);

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;
    bool onTimer(std::uintptr_t timer) override;
    bool onPreview(MSG& message) override;
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    void setColumnWidths();
    // In pixels.
    int columnWidth(std::size_t index) const;
    void fitToColumns();

    void newSchedule();
    void modifySchedule();
    void deleteRow();
    void deleteOnServer();
    // Returns whether it was saved.
    bool edit(ScheduleEdit& edit);

    void select(int row);
    void refresh();
    void showRows();
    void enableButtons();
    void showUsers();

    ScheduleList& schedules_;
    ScheduleCommands commands_;
    std::string shownUsers_;
    int ticks_ = 0;
    ScheduleTable rows_;
    ui::ListView list_;
};

}  // namespace orvc
