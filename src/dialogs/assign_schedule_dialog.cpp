#include "dialogs/assign_schedule_dialog.h"

#include <utility>

#include "resources/resource.h"
#include "ui/controls.h"

namespace orvc {

AssignScheduleDialog::AssignScheduleDialog(const ui::Resources& resources, const ScheduleList& schedules,
                                           std::string question, const std::string& except)
    : Dialog(resources, IDD_ASSIGN_SCHEDULE), question_(std::move(question)) {
    for (const ScheduleRecord& record : schedules.records())
        if (record.key && record.name && (except.empty() || *record.key != except))
            choices_.push_back({*record.key, *record.name});
}

bool AssignScheduleDialog::onInit() {
    if (!question_.empty()) showText(IDC_ASSIGN_TEXT, question_);
    ui::fillDropDown(control(IDC_ASSIGN_SCHEDULE), choices_, -1, &Choice::name);
    centerOn(GetParent(window()));
    SetFocus(control(IDC_ASSIGN_SCHEDULE));
    return false;
}

bool AssignScheduleDialog::onCommand(unsigned id, unsigned notification) {
    const int entry = ui::selectedEntry(control(IDC_ASSIGN_SCHEDULE));
    if (id == IDC_ASSIGN_SCHEDULE && ui::isSelectionChange(notification)) {
        enable(IDOK, entry >= 0);
        return true;
    }
    if (id != IDOK) return Dialog::onCommand(id, notification);
    if (entry < 0) return true;
    chosen_ = static_cast<std::size_t>(entry);
    endDialog(IDOK);
    return true;
}

}  // namespace orvc
