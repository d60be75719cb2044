#include "console/event_list_view.h"

#include <algorithm>

namespace orvc {
namespace {

constexpr int kTitlePadding = 24;  // pixels at 96 DPI around a title

std::span<const EventColumn> shownColumns() {
    return eventColumns().first(kGivenColumnCount);
}

}  // namespace

void EventListView::attach(HWND list) {
    list_.attach(list, table_, [this] { table_.model().selectOnly(list_.selectedRow()); });
    list_.addStyles(LVS_EX_SUBITEMIMAGES | LVS_EX_DOUBLEBUFFER);
    for (const EventColumn& column : shownColumns())
        list_.addColumn(table_.strings().text(column.title));
}

void EventListView::refresh() {
    if (list_.window() == nullptr || isUpToDate()) return;
    shownRevision_ = table_.model().revision();
    list_.show();
    // The selected Event may have moved.
    if (const auto row = table_.model().firstSelected(); row != list_.selectedRow()) list_.select(row);
}

void EventListView::select(std::optional<std::size_t> row) {
    refresh();
    table_.model().selectOnly(row);
    list_.select(row);
    if (row) list_.scrollTo(*row);
}

int EventListView::minimumWidth(int dpi) const {
    int width = 0;
    for (const EventColumn& column : shownColumns()) {
        const int title = list_.textWidth(table_.strings().text(column.title));
        // The list must be so wide that every title fits its column's share.
        width = std::max(width, (title + MulDiv(kTitlePadding, dpi, USER_DEFAULT_SCREEN_DPI)) * 100 / column.share);
    }
    return width;
}

void EventListView::layOutColumns(int dpi) {
    RECT client{};
    GetClientRect(list_.window(), &client);
    // Room for the vertical scroll bar is kept from the start: when it came it would make a horizontal one necessary.
    const bool hasBar = (GetWindowLongA(list_.window(), GWL_STYLE) & WS_VSCROLL) != 0;
    const int width = client.right - (hasBar ? 0 : GetSystemMetrics(SM_CXVSCROLL));
    int rest = std::max(width, minimumWidth(dpi));
    const int whole = rest;
    const auto columns = shownColumns();
    for (std::size_t index = columns.size(); index-- > 0;) {
        // The first column takes what rounding leaves.
        const int share = index == 0 ? rest : whole * columns[index].share / 100;
        list_.setColumnWidth(index, share);
        rest -= share;
    }
}

}  // namespace orvc
