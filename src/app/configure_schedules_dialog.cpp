#include "app/configure_schedules_dialog.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/edit_schedule_dialog.h"
#include "model/guid.h"
#include "win32/new_guid.h"

namespace orvc {
namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshPeriod = 250;  // milliseconds

struct Column {
    unsigned title;
    int width;  // pixels at 96 DPI, for words as short as English ones
    std::string ScheduleRow::*text;
    std::array<unsigned, 2> words;  // what its cells often say; 0 = nothing
};
constexpr std::array<Column, 3> kColumns{{
    {IDS_COLUMN_SCHEDULE_NAME, 200, &ScheduleRow::name, {}},
    {IDS_COLUMN_DAYS, 70, &ScheduleRow::days, {IDS_EVERY_DAY, IDS_NO_DAYS}},
    {IDS_COLUMN_TIMES, 70, &ScheduleRow::times, {IDS_ALL_DAY, IDS_VARIABLE_TIMES}},
}};
constexpr int kCellPadding = 14;  // pixels at 96 DPI around a cell's text

constexpr unsigned kRightOfList[] = {IDC_SCHEDULE_NEW, IDC_SCHEDULE_MODIFY, IDC_SCHEDULE_DELETE, IDOK};

}  // namespace

CConfigureSchedulesDlg::CConfigureSchedulesDlg(const win32::Resources& resources, ScheduleList& schedules,
                                               SortKeyMaker makeSortKey)
    : Dialog(resources, IDD_CONFIGURE_SCHEDULES),
      schedules_(schedules),
      rows_(this->resources(), std::move(makeSortKey)) {}

// ---------------------------------------------------------------------------------------------------------------------
// Opening

bool CConfigureSchedulesDlg::onInit() {
    constexpr DWORD kStyles = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
    SendMessageA(list(), LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);
    insertColumns();
    fitToColumns();
    schedules_.makeDefault();
    schedules_.takeUpdates();
    rows_.fill(schedules_.records());
    showRows();
    focusFirstRow();
    centerOn(GetParent(window()));
    SetTimer(window(), kRefreshTimer, kRefreshPeriod, nullptr);
    return true;
}

void CConfigureSchedulesDlg::insertColumns() {
    for (std::size_t index = 0; index < kColumns.size(); ++index) {
        std::string title = resources().text(kColumns[index].title);
        LVCOLUMNA column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
        column.fmt = LVCFMT_LEFT;
        column.pszText = title.data();
        column.iSubItem = static_cast<int>(index);
        SendMessageA(list(), LVM_INSERTCOLUMNA, index, reinterpret_cast<LPARAM>(&column));
    }
    setColumnWidths();
}

void CConfigureSchedulesDlg::setColumnWidths() {
    for (std::size_t index = 0; index < kColumns.size(); ++index)
        SendMessageA(list(), LVM_SETCOLUMNWIDTH, index, columnWidth(index));
}

int CConfigureSchedulesDlg::columnWidth(std::size_t index) const {
    int width = scale(kColumns[index].width);
    for (const unsigned word : kColumns[index].words) {
        const std::string text = word != 0 ? resources().text(word) : std::string();
        const auto needed = SendMessageA(list(), LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(text.c_str()));
        if (!text.empty()) width = std::max(width, static_cast<int>(needed) + scale(kCellPadding));
    }
    return width;
}

// Columns have widths of their own, whatever the template says: the dialog takes that of the columns with a scroll bar.
void CConfigureSchedulesDlg::fitToColumns() {
    int wanted = GetSystemMetrics(SM_CXVSCROLL);
    for (std::size_t index = 0; index < kColumns.size(); ++index)
        wanted += columnWidth(index);
    RECT client{};
    GetClientRect(list(), &client);
    const int more = wanted - client.right;
    const auto widen = [more](HWND target) {
        RECT area{};
        GetWindowRect(target, &area);
        SetWindowPos(target, nullptr, 0, 0, area.right - area.left + more, area.bottom - area.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    widen(list());
    widen(window());
    for (const unsigned id : kRightOfList) {
        RECT area{};
        GetWindowRect(control(id), &area);
        MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&area), 2);
        SetWindowPos(control(id), nullptr, area.left + more, area.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

// The keyboard starts at the first row. It is not highlighted yet.
void CConfigureSchedulesDlg::focusFirstRow() {
    LVITEMA item{};
    item.state = item.stateMask = LVIS_FOCUSED;
    SendMessageA(list(), LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&item));
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
        default:
            return Dialog::onCommand(id, notification);
    }
}

std::optional<LRESULT> CConfigureSchedulesDlg::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_SCHEDULE_LIST) return std::nullopt;
    switch (header.code) {
        case LVN_GETDISPINFOA:
            fillItem(reinterpret_cast<NMLVDISPINFOA&>(header).item);
            return 0;
        case NM_CLICK:
            select(reinterpret_cast<NMITEMACTIVATE&>(header).iItem);
            return 0;
        case NM_DBLCLK:
            select(reinterpret_cast<NMITEMACTIVATE&>(header).iItem);
            modifySchedule();
            return 0;
        case LVN_ITEMCHANGED:
        case LVN_ODSTATECHANGED:
            // The keyboard selects like a click.
            if (!showing_) select(highlightedRow());
            return 0;
        default:
            return std::nullopt;
    }
}

bool CConfigureSchedulesDlg::onTimer(std::uintptr_t timer) {
    if (timer != kRefreshTimer) return false;
    if (schedules_.takeUpdates()) refresh();
    return true;
}

std::optional<LRESULT> CConfigureSchedulesDlg::onMessage(UINT message, WPARAM, LPARAM) {
    // Windows scales the dialog for the display that it was moved to, but not the columns.
    constexpr UINT kDpiChanged = 0x02E0;
    if (message == kDpiChanged) setColumnWidths();
    return std::nullopt;
}

void CConfigureSchedulesDlg::newSchedule() {
    ScheduleEdit created(formatGuid(win32::newGuid()));
    const std::string key = *created.record().key;
    edit(std::move(created));
    if (const auto row = rows_.rowOf(key)) SendMessageA(list(), LVM_ENSUREVISIBLE, *row, FALSE);
}

void CConfigureSchedulesDlg::modifySchedule() {
    const auto key = rows_.selectedKey();
    if (!key) return;
    // The record may have gone since the last refresh.
    if (const ScheduleRecord* record = schedules_.find(*key)) edit(ScheduleEdit(*record));
}

// Runs the editor. The list's records may all be other ones when it returns.
void CConfigureSchedulesDlg::edit(ScheduleEdit edit) {
    if (CEditScheduleDlg(resources(), edit.record()).runModal(window()) == IDOK)
        edit.save(schedules_);
    else
        edit.cancel(schedules_);
    refresh();
    if (const auto row = rows_.selectedRow()) SendMessageA(list(), LVM_ENSUREVISIBLE, *row, FALSE);
}

void CConfigureSchedulesDlg::deleteRow() {
    rows_.removeSelected();
    showRows();
}

void CConfigureSchedulesDlg::select(int row) {
    rows_.select(row);
    const int highlighted = highlightedRow();
    if (const auto selected = rows_.selectedRow(); selected && highlighted != static_cast<int>(*selected))
        highlight(selected);
    enableButtons();
}

// ---------------------------------------------------------------------------------------------------------------------
// Showing rows

void CConfigureSchedulesDlg::refresh() {
    if (rows_.fill(schedules_.records())) showRows();
}

void CConfigureSchedulesDlg::showRows() {
    showing_ = true;
    SendMessageA(list(), LVM_SETITEMCOUNT, rows_.size(), LVSICF_NOSCROLL);
    showing_ = false;
    // The built-in Schedule may be highlighted, though it is never selected.
    if (rows_.selectedRow() || highlightedRow() > 0) highlight(rows_.selectedRow());
    InvalidateRect(list(), nullptr, FALSE);
    enableButtons();
}

void CConfigureSchedulesDlg::highlight(std::optional<std::size_t> row) {
    showing_ = true;
    LVITEMA item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageA(list(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    if (row) {
        item.state = item.stateMask;
        SendMessageA(list(), LVM_SETITEMSTATE, *row, reinterpret_cast<LPARAM>(&item));
    }
    showing_ = false;
}

int CConfigureSchedulesDlg::highlightedRow() const {
    return static_cast<int>(SendMessageA(list(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void CConfigureSchedulesDlg::enableButtons() {
    const bool enabled = rows_.selectedKey().has_value();
    for (const unsigned id : {IDC_SCHEDULE_MODIFY, IDC_SCHEDULE_DELETE}) {
        // A disabled control must not keep the focus, or the keyboard would reach nothing.
        if (!enabled && GetFocus() == control(id))
            SendMessageA(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list()), TRUE);
        enable(id, enabled);
    }
}

void CConfigureSchedulesDlg::fillItem(LVITEMA& item) const {
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return;
    const auto row = static_cast<std::size_t>(item.iItem);
    const auto column = static_cast<std::size_t>(item.iSubItem);
    const bool isThere = row < rows_.size() && column < kColumns.size();
    lstrcpynA(item.pszText, isThere ? (rows_.at(row).*kColumns[column].text).c_str() : "", item.cchTextMax);
}

}  // namespace orvc
