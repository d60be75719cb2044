#include "console/event_list_view.h"

#include <algorithm>
#include <utility>

namespace orvc {
namespace {

constexpr int kTitlePadding = 24;  // pixels at 96 DPI around a title

}  // namespace

void EventListView::attach(HWND list, const ViewSettings& view, std::function<void()> onSelection) {
    view_ = view;
    onSelection_ = std::move(onSelection);
    list_.attach(list, table_, [this] {
        isSelectionTaken_ = false;
        onSelection_();
    });
    list_.addStyles(LVS_EX_SUBITEMIMAGES | LVS_EX_DOUBLEBUFFER | LVS_EX_HEADERDRAGDROP);
    makeColumns();
    if (view_.secondSort) table_.sortBy(*view_.secondSort);
    if (view_.firstSort) table_.sortBy(*view_.firstSort);
    showSort();
}

HWND EventListView::header() const {
    return reinterpret_cast<HWND>(SendMessageA(list_.window(), LVM_GETHEADER, 0, 0));
}

void EventListView::refresh() {
    if (list_.window() == nullptr || isUpToDate()) return;
    takeSelection();
    shownRevision_ = table_.model().revision();
    list_.show();
    showSelection();
}

// ---------------------------------------------------------------------------------------------------------------------
// Columns

void EventListView::makeColumns() {
    list_.removeColumns();
    for (const ViewColumn& column : view_.columns)
        if (column.isShown)
            list_.addColumn(table_.strings().text(eventColumn(column.id).title), static_cast<std::size_t>(column.id));
}

int EventListView::minimumWidth(int dpi) const {
    int width = 0;
    for (const EventColumn& column : eventColumns().first(kGivenColumnCount)) {
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
    const int whole = std::max(width, minimumWidth(dpi));
    const int nameShare = eventColumn(EventColumnId::kName).share;
    int rest = whole;
    std::optional<std::size_t> name;
    for (std::size_t index = 0; index < list_.shownColumnCount(); ++index) {
        const auto id = static_cast<EventColumnId>(list_.sourceColumn(index));
        const ViewColumn& column = *std::ranges::find(view_.columns, id, &ViewColumn::id);
        const int share = whole * eventColumn(id).share / 100;
        if (id == EventColumnId::kName && column.width == 0) {
            name = index;
            continue;
        }
        const int columnWidth = column.width > 0 ? MulDiv(column.width, dpi, USER_DEFAULT_SCREEN_DPI) : share;
        list_.setColumnWidth(index, columnWidth);
        rest -= columnWidth;
    }
    // The name takes what is left, also what rounding leaves; beside many columns not less than its share.
    if (name) list_.setColumnWidth(*name, std::max(rest, whole * nameShare / 100));
    laidOutOrder_ = list_.columnOrder();
    laidOutWidths_ = currentWidths();
}

void EventListView::toggleColumn(EventColumnId id) {
    if (id == EventColumnId::kName) return;
    const auto column = std::ranges::find(view_.columns, id, &ViewColumn::id);
    column->isShown = !column->isShown;
    makeColumns();
    laidOutWidths_.clear();
    showSort();
    table_.model().touch();
}

// Hidden columns keep their places behind those that are shown.
bool EventListView::readColumns(int dpi) {
    const std::vector<std::size_t> order = list_.columnOrder();
    const std::vector<int> widths = currentWidths();
    if (laidOutWidths_.empty() || (order == laidOutOrder_ && widths == laidOutWidths_)) return false;
    for (std::size_t index = 0; widths != laidOutWidths_ && index < widths.size(); ++index) {
        const auto id = static_cast<EventColumnId>(list_.sourceColumn(index));
        std::ranges::find(view_.columns, id, &ViewColumn::id)->width =
            std::clamp(MulDiv(widths[index], USER_DEFAULT_SCREEN_DPI, dpi), kLeastColumnWidth, kGreatestColumnWidth);
    }
    std::ranges::stable_sort(view_.columns, {}, [&](const ViewColumn& column) {
        return std::ranges::find(order, static_cast<std::size_t>(column.id)) - order.begin();
    });
    laidOutOrder_ = order;
    laidOutWidths_ = widths;
    return true;
}

std::vector<int> EventListView::currentWidths() const {
    std::vector<int> widths;
    for (std::size_t index = 0; index < list_.shownColumnCount(); ++index)
        widths.push_back(list_.columnWidth(index));
    return widths;
}

// ---------------------------------------------------------------------------------------------------------------------
// Sort

void EventListView::sortBy(EventColumnId id) {
    const auto keys = table_.sortKeys();
    const EventSortKey now = keys.empty() ? EventSortKey{} : keys.front();
    table_.sortBy({id, now.column == id && !now.descending});
    showSort();
    refresh();
}

void EventListView::sortAgain() {
    table_.sortAnew();
    refresh();
}

void EventListView::showSort() {
    const auto keys = table_.sortKeys();
    view_.firstSort = keys.empty() ? std::nullopt : std::optional(keys[0]);
    view_.secondSort = keys.size() < 2 ? std::nullopt : std::optional(keys[1]);
    // In the given order the list looks as it always did.
    list_.showSort(keys.empty() ? std::nullopt : std::optional(static_cast<std::size_t>(keys[0].column)),
                   !keys.empty() && keys[0].descending);
}

// ---------------------------------------------------------------------------------------------------------------------
// Selection

// Notifications may come row by row: the table is told once, before anything asks it.
void EventListView::takeSelection() {
    if (isSelectionTaken_) return;
    isSelectionTaken_ = true;
    EventTable::Model& model = table_.model();
    model.selectOnly(std::nullopt);
    for (const std::size_t row : list_.selectedRows())
        if (row < model.size()) model.setSelected(row, true);
    const auto focused = list_.focusedRow();
    focusedKey_ = focused && *focused < model.size() ? model.at(*focused).key : std::string();
}

void EventListView::showSelection() {
    const EventTable::Model& model = table_.model();
    std::vector<std::size_t> rows;
    std::optional<std::size_t> focused;
    if (model.selectedCount() > 0) {
        for (std::size_t row = 0; row < model.size(); ++row) {
            if (!model.isSelected(row)) continue;
            rows.push_back(row);
            if (model.at(row).key == focusedKey_) focused = row;
        }
        if (!focused && !rows.empty()) focused = rows.front();
    }
    list_.highlight(rows);
    if (focused && focused != list_.focusedRow()) list_.focus(*focused);
}

void EventListView::select(std::optional<std::size_t> row) {
    refresh();
    isSelectionTaken_ = true;
    table_.model().selectOnly(row);
    focusedKey_ = row ? table_.model().at(*row).key : std::string();
    list_.select(row);
    if (row) list_.scrollTo(*row);
    onSelection_();
}

void EventListView::selectNear(std::optional<std::size_t> row) {
    const std::size_t size = table_.size();
    select(row && size > 0 ? std::optional(std::min(*row, size - 1)) : std::nullopt);
}

void EventListView::selectAll() {
    refresh();
    isSelectionTaken_ = true;
    table_.model().selectAll();
    showSelection();
    onSelection_();
}

EventRecords EventListView::selectedRecords() {
    takeSelection();
    return table_.model().selectedRecords();
}

std::vector<std::string> EventListView::selectedKeys() {
    std::vector<std::string> keys;
    for (const EventRecord* const record : selectedRecords())
        keys.push_back(record->key);
    return keys;
}

bool EventListView::hasSelection() {
    takeSelection();
    return table_.model().selectedCount() > 0;
}

const EventRecord* EventListView::focusedRecord() {
    takeSelection();
    const EventTable::Model& model = table_.model();
    const auto row = list_.focusedRow();
    if (row && *row < model.size() && model.isSelected(*row)) return &model.at(*row);
    return table_.selectedRecord();
}

}  // namespace orvc
