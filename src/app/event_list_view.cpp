#include "app/event_list_view.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr int kReservedRows = 1024;

// A column's title, its share of the width in percent, and whether it takes what rounding leaves.
struct ColumnLayout {
    unsigned title;
    int share;
};
constexpr std::array<ColumnLayout, kEventColumnCount> kColumns{{
    {IDS_COLUMN_EVENT_NAME, 38},
    {IDS_COLUMN_STATUS, 15},
    {IDS_COLUMN_LAST_EVENT, 22},
    {IDS_COLUMN_RESPONSE, 25},
}};
constexpr int kTitlePadding = 24;  // pixels at 96 DPI around a title

}  // namespace

EventListView::EventListView(const EventRows& rows, const StringTable& strings, const Clock& clock)
    : rows_(rows), strings_(strings), clock_(clock) {}

void EventListView::attach(HWND list) {
    list_ = list;
    constexpr DWORD kStyles = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_SUBITEMIMAGES | LVS_EX_DOUBLEBUFFER;
    SendMessageA(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);
    SendMessageA(list_, LVM_SETITEMCOUNT, kReservedRows, LVSICF_NOSCROLL);
    SendMessageA(list_, LVM_SETITEMCOUNT, 0, 0);
    for (int index = 0; index < kEventColumnCount; ++index) {
        std::string title = strings_.text(kColumns[static_cast<std::size_t>(index)].title);
        LVCOLUMNA column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
        column.fmt = LVCFMT_LEFT;
        column.pszText = title.data();
        column.iSubItem = index;
        SendMessageA(list_, LVM_INSERTCOLUMNA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
    }
}

void EventListView::refresh() {
    if (list_ == nullptr || isUpToDate()) return;
    shownRevision_ = rows_.revision();
    refreshing_ = true;
    const auto count = static_cast<WPARAM>(rows_.size());
    const auto before = static_cast<WPARAM>(SendMessageA(list_, LVM_GETITEMCOUNT, 0, 0));
    if (before != count) SendMessageA(list_, LVM_SETITEMCOUNT, count, LVSICF_NOSCROLL | LVSICF_NOINVALIDATEALL);
    // The selected Event may have moved: an address that no row holds any more is no Event.
    int row = -1;
    for (std::size_t i = 0; selected_ != nullptr && i < rows_.size(); ++i) {
        // Look where it was first: most refreshes move nothing.
        const std::size_t candidate = (i + static_cast<std::size_t>(std::max(selectedRow_, 0))) % rows_.size();
        if (&rows_.at(candidate) == selected_) {
            row = static_cast<int>(candidate);
            break;
        }
    }
    if (row != selectedRow_) select(row);
    refreshing_ = false;
    try {
        repaintChangedRows(count < before);
    } catch (const std::exception&) {
        InvalidateRect(list_, nullptr, FALSE);  // no memory to find out which: all of them
    }
}

// While events pour in most of them change nothing that is to be seen, and painting is dear.
void EventListView::repaintChangedRows(bool rowsWent) {
    const auto from = static_cast<int>(SendMessageA(list_, LVM_GETTOPINDEX, 0, 0));
    const auto page = static_cast<std::size_t>(SendMessageA(list_, LVM_GETCOUNTPERPAGE, 0, 0)) + 1;
    const auto first = static_cast<std::size_t>(std::max(from, 0));
    std::vector<std::string> shown;
    for (std::size_t row = first; row < rows_.size() && row < first + page; ++row) {
        std::string& texts = shown.emplace_back();
        for (int column = 0; column < kEventColumnCount; ++column)
            texts.append(eventCellText(rows_.at(row), static_cast<EventColumn>(column), strings_, clock_)).append("\n");
    }
    const bool scrolled = from != std::exchange(shownFrom_, from);
    shown.swap(shownRows_);  // `shown` is what was there
    if (rowsWent || scrolled) {
        InvalidateRect(list_, nullptr, FALSE);
        return;
    }
    for (std::size_t i = 0; i < shownRows_.size(); ++i)
        if (i >= shown.size() || shown[i] != shownRows_[i])
            SendMessageA(list_, LVM_REDRAWITEMS, first + i, static_cast<LPARAM>(first + i));
}

void EventListView::select(int row) {
    const bool was = std::exchange(refreshing_, true);
    LVITEMA item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    // Not for all rows at once, which takes a step for each of them.
    const auto selected = SendMessageA(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    if (selected >= 0)
        SendMessageA(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(selected), reinterpret_cast<LPARAM>(&item));
    if (row >= 0) {
        item.state = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageA(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
    refreshing_ = was;
    selectedRow_ = row;
    selected_ = row >= 0 ? &rows_.at(static_cast<std::size_t>(row)) : nullptr;
}

EventRecord* EventListView::selectedRecord() const {
    const auto row = static_cast<std::size_t>(selectedRow_);
    return selectedRow_ >= 0 && row < rows_.size() && &rows_.at(row) == selected_ ? &rows_.at(row) : nullptr;
}

void EventListView::rememberSelection() {
    if (refreshing_) return;
    selectedRow_ = static_cast<int>(SendMessageA(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    const auto row = static_cast<std::size_t>(selectedRow_);
    selected_ = selectedRow_ >= 0 && row < rows_.size() ? &rows_.at(row) : nullptr;
}

std::optional<LRESULT> EventListView::onNotify(NMHDR& header) {
    if (header.hwndFrom != list_) return std::nullopt;
    switch (header.code) {
        case LVN_GETDISPINFOA:
            fillItem(reinterpret_cast<NMLVDISPINFOA&>(header).item);
            return 0;
        case LVN_ODFINDITEMA:
            return findByPrefix(reinterpret_cast<NMLVFINDITEMA&>(header));
        case NM_CLICK:
        case LVN_ITEMCHANGED:
        case LVN_ODSTATECHANGED:
            rememberSelection();
            return 0;
        default:
            return std::nullopt;
    }
}

void EventListView::fillItem(LVITEMA& item) {
    const auto row = static_cast<std::size_t>(item.iItem);
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return;
    *item.pszText = '\0';
    cellText_.clear();
    if (item.iItem >= 0 && row < rows_.size())
        cellText_ = eventCellText(rows_.at(row), static_cast<EventColumn>(item.iSubItem), strings_, clock_);
    lstrcpynA(item.pszText, cellText_.c_str(), item.cchTextMax);
}

// The row whose name begins with what the operator types, searched from a row on and around.
int EventListView::findByPrefix(const NMLVFINDITEMA& request) const {
    if ((request.lvfi.flags & LVFI_STRING) == 0 || request.lvfi.psz == nullptr || rows_.size() == 0) return -1;
    const int length = lstrlenA(request.lvfi.psz);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const std::size_t row = (static_cast<std::size_t>(std::max(request.iStart, 0)) + i) % rows_.size();
        const std::string& name = rows_.at(row).name.value_or(std::string());
        if (name.size() >= static_cast<std::size_t>(length) &&
            CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, name.c_str(), length, request.lvfi.psz, length) ==
                CSTR_EQUAL)
            return static_cast<int>(row);
    }
    return -1;
}

int EventListView::minimumWidth(int dpi) const {
    int width = 0;
    for (const ColumnLayout& column : kColumns) {
        const auto title = static_cast<int>(
            SendMessageA(list_, LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(strings_.text(column.title).c_str())));
        // The widest share needs its title to fit: what the whole must be for it.
        width = std::max(width, (title + MulDiv(kTitlePadding, dpi, USER_DEFAULT_SCREEN_DPI)) * 100 / column.share);
    }
    return width;
}

void EventListView::layOutColumns(int dpi) {
    RECT client{};
    GetClientRect(list_, &client);
    // Room for the vertical scroll bar is kept from the start: when it came it would make a horizontal one necessary.
    const bool hasBar = (GetWindowLongA(list_, GWL_STYLE) & WS_VSCROLL) != 0;
    const int width = client.right - (hasBar ? 0 : GetSystemMetrics(SM_CXVSCROLL));
    int rest = std::max(width, minimumWidth(dpi));
    const int whole = rest;
    for (int index = kEventColumnCount - 1; index >= 0; --index) {
        const int share = index == 0 ? rest : whole * kColumns[static_cast<std::size_t>(index)].share / 100;
        SendMessageA(list_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(index), share);
        rest -= share;
    }
}

}  // namespace orvc
