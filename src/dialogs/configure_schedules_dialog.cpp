#include "dialogs/configure_schedules_dialog.h"

#include <algorithm>
#include <array>
#include <utility>

#include "dialogs/assign_schedule_dialog.h"
#include "dialogs/edit_schedule_dialog.h"
#include "model/guid.h"
#include "support/text.h"
#include "view/window_texts.h"
#include "win32/new_guid.h"

namespace orvc {
namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshPeriod = 250;  // milliseconds

struct Column {
    unsigned title;
    int width;                      // pixels at 96 DPI, for words as short as English ones
    std::array<unsigned, 2> words;  // what its cells often say; 0 = nothing
};
constexpr std::array<Column, ScheduleTable::kColumnCount> kColumns{{
    {IDS_COLUMN_SCHEDULE_NAME, 200, {}},
    {IDS_COLUMN_DAYS, 70, {IDS_EVERY_DAY, IDS_NO_DAYS}},
    {IDS_COLUMN_TIMES, 70, {IDS_ALL_DAY, IDS_VARIABLE_TIMES}},
    {IDS_COLUMN_USERS, 50, {IDS_COLUMN_USERS, 0}},
}};
constexpr int kCellPadding = 14;  // pixels at 96 DPI around a cell's text

constexpr unsigned kRightOfList[] = {IDC_SCHEDULE_NEW,         IDC_SCHEDULE_MODIFY,      IDC_SCHEDULE_DELETE,
                                     IDC_SCHEDULE_DELETE_NOTE, IDC_SCHEDULE_DELETE_REAL, IDOK};
constexpr unsigned kBelowList[] = {IDC_SCHEDULE_USERS_LABEL, IDC_SCHEDULE_USERS};
constexpr int kTicksPerCount = 4;  // Events change without a word here: who uses what is asked once a second

}  // namespace

CConfigureSchedulesDlg::CConfigureSchedulesDlg(const ui::Resources& resources, ScheduleList& schedules,
                                               SortKeyMaker makeSortKey, ScheduleCommands commands)
    : Dialog(resources, IDD_CONFIGURE_SCHEDULES),
      schedules_(schedules),
      commands_(std::move(commands)),
      rows_(this->resources(), std::move(makeSortKey), commands_.countUsers) {}

// ---------------------------------------------------------------------------------------------------------------------
// Opening

bool CConfigureSchedulesDlg::onInit() {
    // The keyboard selects like a click.
    list_.attach(control(IDC_SCHEDULE_LIST), rows_, [this] {
        const auto row = list_.selectedRow();
        select(row ? static_cast<int>(*row) : -1);
    });
    list_.addStyles(LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
    for (const Column& column : kColumns)
        list_.addColumn(resources().text(column.title));
    setColumnWidths();
    fitToColumns();
    schedules_.makeDefault();
    schedules_.takeUpdates();
    rows_.fill(schedules_.records());
    showRows();
    // The keyboard starts at the first row. It is not highlighted yet.
    list_.focus(0);
    centerOn(GetParent(window()));
    SetTimer(window(), kRefreshTimer, kRefreshPeriod, nullptr);
    return true;
}

void CConfigureSchedulesDlg::setColumnWidths() {
    for (std::size_t index = 0; index < kColumns.size(); ++index)
        list_.setColumnWidth(index, columnWidth(index));
}

int CConfigureSchedulesDlg::columnWidth(std::size_t index) const {
    int width = scale(kColumns[index].width);
    for (const unsigned word : kColumns[index].words) {
        const std::string text = word != 0 ? resources().text(word) : std::string();
        if (!text.empty()) width = std::max(width, list_.textWidth(text) + scale(kCellPadding));
    }
    return width;
}

// Columns have widths of their own, whatever the template says: the dialog takes that of the columns with a scroll bar.
void CConfigureSchedulesDlg::fitToColumns() {
    int wanted = GetSystemMetrics(SM_CXVSCROLL);
    for (std::size_t index = 0; index < kColumns.size(); ++index)
        wanted += columnWidth(index);
    RECT client{};
    GetClientRect(list_.window(), &client);
    const int more = wanted - client.right;
    const auto widen = [more](HWND target) {
        RECT area{};
        GetWindowRect(target, &area);
        SetWindowPos(target, nullptr, 0, 0, area.right - area.left + more, area.bottom - area.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    widen(list_.window());
    for (const unsigned id : kBelowList)
        widen(control(id));
    widen(window());
    for (const unsigned id : kRightOfList) {
        RECT area{};
        GetWindowRect(control(id), &area);
        MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&area), 2);
        SetWindowPos(control(id), nullptr, area.left + more, area.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// What the operator does

bool CConfigureSchedulesDlg::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case IDC_SCHEDULE_NEW:
            newSchedule();
            return true;
        case IDC_SCHEDULE_MODIFY:
            modifySchedule();
            return true;
        case IDC_SCHEDULE_DELETE:
            deleteRow();
            return true;
        case IDC_SCHEDULE_DELETE_REAL:
            deleteOnServer();
            return true;
        default:
            return Dialog::onCommand(id, notification);
    }
}

std::optional<LRESULT> CConfigureSchedulesDlg::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_SCHEDULE_LIST) return std::nullopt;
    switch (header.code) {
        case NM_CLICK:
            select(reinterpret_cast<NMITEMACTIVATE&>(header).iItem);
            return 0;
        case NM_DBLCLK:
            select(reinterpret_cast<NMITEMACTIVATE&>(header).iItem);
            modifySchedule();
            return 0;
        default:
            return list_.onNotify(header);
    }
}

bool CConfigureSchedulesDlg::onTimer(std::uintptr_t timer) {
    if (timer != kRefreshTimer) return false;
    if (schedules_.takeUpdates() || ++ticks_ % kTicksPerCount == 0) refresh();
    return true;
}

std::optional<LRESULT> CConfigureSchedulesDlg::onMessage(UINT message, WPARAM, LPARAM) {
    // Windows scales the dialog for the display that it was moved to, but not the columns.
    constexpr UINT kDpiChanged = 0x02E0;
    if (message == kDpiChanged) setColumnWidths();
    return std::nullopt;
}

// In the list, Del and Enter do what Delete and Modify do. They never close the dialog.
bool CConfigureSchedulesDlg::onPreview(MSG& message) {
    if (message.message != WM_KEYDOWN || message.hwnd != list_.window()) return false;
    if (message.wParam != VK_DELETE && message.wParam != VK_RETURN) return false;
    const unsigned button = message.wParam == VK_DELETE ? IDC_SCHEDULE_DELETE : IDC_SCHEDULE_MODIFY;
    if (IsWindowEnabled(control(button))) onCommand(button, BN_CLICKED);
    return true;
}

void CConfigureSchedulesDlg::newSchedule() {
    ScheduleEdit created(formatGuid(win32::newGuid()));
    if (!edit(created)) return;
    const ScheduleRecord* const record = schedules_.find(*created.record().key);
    const auto row = record != nullptr ? rows_.rowOf(record->id) : std::nullopt;
    if (row) list_.scrollTo(*row);
}

void CConfigureSchedulesDlg::modifySchedule() {
    const auto id = rows_.selectedId();
    if (!id) return;
    // The record may have gone since the last refresh.
    const ScheduleRecord* const record = schedules_.findById(*id);
    if (record == nullptr) return;
    ScheduleEdit changed(*record);
    edit(changed);
}

// Runs the editor. The list's records may all be other ones when it returns.
bool CConfigureSchedulesDlg::edit(ScheduleEdit& edit) {
    const bool saved = CEditScheduleDlg(resources(), edit.record(), commands_.linkNote).runModal(window()) == IDOK;
    if (!saved) {
        // The row stays as it was.
        edit.cancel(schedules_);
        return false;
    }
    commands_.apply(edit.change(schedules_));
    refresh();
    if (const auto row = rows_.selectedRow()) list_.scrollTo(*row);
    return true;
}

void CConfigureSchedulesDlg::deleteRow() {
    rows_.removeSelected();
    showRows();
}

// A Schedule in use is deleted only after its Events got another one.
void CConfigureSchedulesDlg::deleteOnServer() {
    const auto id = rows_.selectedId();
    const ScheduleRecord* const selected = id ? schedules_.findById(*id) : nullptr;
    if (selected == nullptr) return;
    const ScheduleRecord record = *selected;
    const std::size_t users = commands_.countUsers(*record.key);
    std::string otherKey;
    if (users > 0) {
        AssignScheduleDialog dialog(
            resources(), schedules_,
            fillIn(resources().text(IDS_SERVER_DELETE_IN_USE), {eventCountText(resources(), users)}), *record.key);
        if (!dialog.run(window())) return;
        otherKey = dialog.key();
    } else if (!ui::askYesNo(window(), fillIn(resources().text(IDS_DELETE_SCHEDULE), {record.name.value_or("")}),
                             resources().text(IDS_DELETE_SCHEDULE_CAPTION))) {
        return;
    }
    commands_.deleteOnServer(record, otherKey);
    refresh();
}

void CConfigureSchedulesDlg::showUsers() {
    // Of the built-in Schedule too, which can be highlighted.
    const auto row = list_.selectedRow();
    std::string names;
    if (row && *row < rows_.size())
        for (const std::string& name : commands_.userNames(rows_.at(*row).key))
            names.append(names.empty() ? "" : "\r\n").append(name);
    if (names == shownUsers_) return;
    shownUsers_ = names;
    showText(IDC_SCHEDULE_USERS, names);
}

void CConfigureSchedulesDlg::select(int row) {
    rows_.select(row);
    if (const auto selected = rows_.selectedRow(); selected && selected != list_.selectedRow()) list_.select(selected);
    enableButtons();
}

// ---------------------------------------------------------------------------------------------------------------------
// Showing rows

void CConfigureSchedulesDlg::refresh() {
    if (rows_.fill(schedules_.records())) showRows();
}

void CConfigureSchedulesDlg::showRows() {
    list_.show();
    // The built-in Schedule may be highlighted, though it is never selected.
    const auto highlighted = list_.selectedRow();
    if (rows_.selectedRow() || highlighted.value_or(0) > 0) list_.select(rows_.selectedRow());
    enableButtons();
}

void CConfigureSchedulesDlg::enableButtons() {
    const bool enabled = rows_.selectedId().has_value();
    showUsers();
    for (const unsigned id : {IDC_SCHEDULE_MODIFY, IDC_SCHEDULE_DELETE, IDC_SCHEDULE_DELETE_REAL}) {
        // A disabled control must not keep the focus, or the keyboard would reach nothing.
        if (!enabled && GetFocus() == control(id))
            SendMessageA(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list_.window()), TRUE);
        enable(id, enabled);
    }
}

}  // namespace orvc
