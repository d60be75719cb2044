#include "dialogs/edit_schedule_dialog.h"

#include <commctrl.h>

#include <utility>

#include "resources/resource.h"
#include "support/text.h"
#include "ui/controls.h"
#include "win32/code_page.h"

namespace orvc {
namespace {

constexpr UINT_PTR kFootTimer = 1;
constexpr int kHours = 12;
constexpr int kListsPerTime = 3;

constexpr unsigned hourList(int time) {
    return IDC_SCHEDULE_TIME + static_cast<unsigned>(kListsPerTime * time);
}
constexpr unsigned minuteList(int time) {
    return hourList(time) + 1;
}
constexpr unsigned halfList(int time) {
    return hourList(time) + 2;
}

}  // namespace

CEditScheduleDlg::CEditScheduleDlg(const ui::Resources& resources, ScheduleRecord& record, LinkNote linkNote)
    : Dialog(resources, IDD_EDIT_SCHEDULE),
      form_(record),
      recordName_(record.name.value_or(std::string())),
      linkNote_(std::move(linkNote)) {}

bool CEditScheduleDlg::onInit() {
    foot_.attach(control(IDC_SCHEDULE_FOOT));
    fillLists();
    insertTabs();
    showNameHint();
    showForm();
    centerOn(GetParent(window()));
    SetTimer(window(), kFootTimer, kLinkNotePeriod, nullptr);
    return true;
}

void CEditScheduleDlg::fillLists() {
    for (unsigned day = 0; day < WeekMask::kDays; ++day)
        addEntry(IDC_SCHEDULE_DAY_LIST, resources().text(IDS_SUNDAY + day));
    for (int time = 0; time < ScheduleForm::kTimes; ++time) {
        addEntry(hourList(time), resources().text(IDS_HOUR_NONE));
        for (int hour = 0; hour < kHours; ++hour)
            addEntry(hourList(time), formatText("%02d", hour == 0 ? kHours : hour));
        addEntry(minuteList(time), "00");
        addEntry(minuteList(time), "30");
        addEntry(halfList(time), resources().text(IDS_AM));
        addEntry(halfList(time), resources().text(IDS_PM));
    }
}

void CEditScheduleDlg::insertTabs() {
    const HWND tabs = control(IDC_SCHEDULE_DAY_TABS);
    for (unsigned day = 0; day < WeekMask::kDays; ++day) {
        std::string text = resources().text(IDS_DAY_TAB_SUNDAY + day);
        TCITEMA item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        SendMessageA(tabs, TCM_INSERTITEMA, day, reinterpret_cast<LPARAM>(&item));
    }
    // Seven equal tabs fill the strip. It is no higher than they are: what a tab control draws beneath would cover the
    // lists.
    RECT strip{};
    RECT tab{};
    GetClientRect(tabs, &strip);
    SendMessageA(tabs, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&tab));
    const int width = (strip.right - 2 * tab.left) / WeekMask::kDays;
    SendMessageA(tabs, TCM_SETITEMSIZE, 0, MAKELPARAM(width, tab.bottom - tab.top));
    SetWindowPos(tabs, nullptr, 0, 0, strip.right, tab.bottom + scale(2), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The box opens empty: grey letters in it tell which Schedule this is.
void CEditScheduleDlg::showNameHint() {
    const std::string hint = recordName_.empty() ? resources().text(IDS_SCHEDULE_NAME_HINT)
                                                 : fillIn(resources().text(IDS_SCHEDULE_RENAME_HINT), {recordName_});
    const std::wstring wide = win32::toWide(hint);
    SendMessageA(control(IDC_SCHEDULE_NAME), EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(wide.c_str()));
}

// ---------------------------------------------------------------------------------------------------------------------
// Between the form and the controls

void CEditScheduleDlg::showForm() {
    showing_ = true;
    showText(IDC_SCHEDULE_NAME, form_.name);
    SendMessageA(control(IDC_SCHEDULE_DAY_TABS), TCM_SETCURSEL, static_cast<WPARAM>(form_.currentDay()), 0);
    selectEntry(IDC_SCHEDULE_DAY_LIST, form_.currentDay());
    for (int time = 0; time < ScheduleForm::kTimes; ++time) {
        const TimeChoice& choice = form_.times[static_cast<std::size_t>(time)];
        selectEntry(hourList(time), choice.hour);
        selectEntry(minuteList(time), choice.minute);
        selectEntry(halfList(time), choice.half);
    }
    showing_ = false;
    enableControls();
}

void CEditScheduleDlg::readControls() {
    form_.name = readText(IDC_SCHEDULE_NAME);
    for (int time = 0; time < ScheduleForm::kTimes; ++time)
        form_.times[static_cast<std::size_t>(time)] = {selectedEntry(hourList(time)), selectedEntry(minuteList(time)),
                                                       selectedEntry(halfList(time))};
}

void CEditScheduleDlg::enableControls() {
    for (int time = 0; time < ScheduleForm::kTimes; ++time) {
        enable(minuteList(time), form_.isDetailEnabled(time));
        enable(halfList(time), form_.isDetailEnabled(time));
    }
    enable(IDOK, form_.canSave());
}

// ---------------------------------------------------------------------------------------------------------------------
// What the operator does

bool CEditScheduleDlg::onCommand(unsigned id, unsigned notification) {
    if (id == IDOK) {
        if (IsWindowEnabled(control(IDOK))) save();
        return true;
    }
    if (showing_) return false;
    if (id == IDC_SCHEDULE_NAME && notification == EN_CHANGE) {
        changeName();
        return true;
    }
    if (notification == CBN_SELCHANGE) {
        if (id == IDC_SCHEDULE_DAY_LIST) {
            changeDay(selectedEntry(id));
            return true;
        }
        for (int time = 0; time < ScheduleForm::kTimes; ++time) {
            if (id != hourList(time)) continue;
            changeHour(time);
            return true;
        }
    }
    return Dialog::onCommand(id, notification);
}

std::optional<LRESULT> CEditScheduleDlg::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_SCHEDULE_DAY_TABS || header.code != TCN_SELCHANGE) return std::nullopt;
    changeDay(static_cast<int>(SendMessageA(header.hwndFrom, TCM_GETCURSEL, 0, 0)));
    return 0;
}

bool CEditScheduleDlg::onTimer(std::uintptr_t timer) {
    if (timer == kFootTimer) foot_.show(linkNote_());
    return timer == kFootTimer;
}

bool CEditScheduleDlg::onPreview(MSG& message) {
    const auto day = ui::tabChosenBy(message, control(IDC_SCHEDULE_DAY_TABS));
    if (day) changeDay(*day);
    return day.has_value();
}

void CEditScheduleDlg::changeName() {
    readControls();
    enableControls();
}

void CEditScheduleDlg::changeHour(int time) {
    readControls();
    form_.changeHour(time);
    enableControls();
}

void CEditScheduleDlg::changeDay(int day) {
    if (day < 0) return;
    readControls();
    if (const auto message = form_.changeDay(day)) showError(*message);
    // After a failure this puts the tab back.
    showForm();
}

void CEditScheduleDlg::save() {
    readControls();
    if (const auto message = form_.save()) showError(*message);
    endDialog(IDOK);
}

void CEditScheduleDlg::showError(unsigned message) {
    ui::showMessage(window(), resources().text(message), resources().text(IDS_ERROR_CAPTION));
}

// ---------------------------------------------------------------------------------------------------------------------
// Drop-down lists

void CEditScheduleDlg::addEntry(unsigned list, const std::string& text) {
    SendMessageA(control(list), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

int CEditScheduleDlg::selectedEntry(unsigned list) const {
    return static_cast<int>(SendMessageA(control(list), CB_GETCURSEL, 0, 0));
}

void CEditScheduleDlg::selectEntry(unsigned list, int entry) {
    ui::selectEntry(control(list), entry);
}

}  // namespace orvc
