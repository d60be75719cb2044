// The schedule editor's window; its rules are ScheduleForm's.
#pragma once

#include "dialogs/link_note.h"
#include "editors/schedule/schedule_form.h"
#include "ui/dialog.h"
#include "ui/foot_line.h"

namespace orvc {

// Purpose: edits a Schedule's name and, one day at a time, its periods. runModal() returns IDOK for Save; anything else
// is Cancel. Days that were left for another one are in the record either way.
// Thread: user-interface thread. Lifetime: the record is the caller's own and outlives the dialog.
class CEditScheduleDlg final : public ui::Dialog {
  public:
    CEditScheduleDlg(const ui::Resources& resources, ScheduleRecord& record, LinkNote linkNote);

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;
    bool onTimer(std::uintptr_t timer) override;
    bool onPreview(MSG& message) override;
    bool holdsEntries() const override { return true; }

    void fillLists();
    void insertTabs();
    void showNameHint();

    // Between the form and the controls.
    void showForm();
    void readControls();
    void enableControls();

    void changeName();
    void changeHour(int time);
    void changeDay(int day);
    void save();
    void showError(unsigned message);

    void addEntry(unsigned list, const std::string& text);
    int selectedEntry(unsigned list) const;
    void selectEntry(unsigned list, int entry);

    ScheduleForm form_;
    std::string recordName_;
    LinkNote linkNote_;
    ui::FootLine foot_;
    bool showing_ = false;  // the controls are changed by us, not by the operator
};

}  // namespace orvc
