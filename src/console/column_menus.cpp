#include "console/column_menus.h"

#include "resources/resource.h"

namespace orvc {
namespace {

void tick(HMENU menu, std::size_t id, bool isOn) {
    CheckMenuItem(menu, static_cast<UINT>(id), MF_BYCOMMAND | (isOn ? MF_CHECKED : MF_UNCHECKED));
}

std::optional<EventColumnId> columnOf(unsigned command, unsigned first) {
    if (command < first || command >= first + kEventColumnCount) return std::nullopt;
    return static_cast<EventColumnId>(command - first);
}

}  // namespace

void ColumnMenus::attach(HMENU menu, const StringTable& strings) {
    columns_ = CreatePopupMenu();
    sort_ = CreatePopupMenu();
    for (std::size_t i = 0; i < kEventColumnCount; ++i) {
        const std::string title = strings.text(eventColumns()[i].title);
        AppendMenuA(columns_, MF_STRING, IDM_COLUMN + i, title.c_str());
        AppendMenuA(sort_, MF_STRING, IDM_SORT_BY + i, title.c_str());
    }
    EnableMenuItem(columns_, IDM_COLUMN, MF_BYCOMMAND | MF_GRAYED);  // the name cannot be hidden
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        const HMENU popup = GetSubMenu(menu, position);
        if (popup == nullptr || GetMenuState(popup, IDM_SHOW_DETAIL, MF_BYCOMMAND) == static_cast<UINT>(-1)) continue;
        InsertMenuA(popup, 0, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(columns_),
                    strings.text(IDS_MENU_COLUMNS).c_str());
        InsertMenuA(popup, 1, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(sort_),
                    strings.text(IDS_MENU_SORT).c_str());
    }
}

void ColumnMenus::update(const ViewSettings& view, std::span<const EventSortKey> sort) const {
    const EventColumnId sorted = sort.empty() ? EventColumnId::kName : sort.front().column;
    for (const ViewColumn& column : view.columns) {
        tick(columns_, IDM_COLUMN + static_cast<std::size_t>(column.id), column.isShown);
        tick(sort_, IDM_SORT_BY + static_cast<std::size_t>(column.id), column.id == sorted);
    }
}

void ColumnMenus::show(HWND owner, POINT place) const {
    TrackPopupMenu(columns_, TPM_RIGHTBUTTON, place.x, place.y, 0, owner, nullptr);
}

std::optional<EventColumnId> ColumnMenus::columnToToggle(unsigned command) {
    return columnOf(command, IDM_COLUMN);
}

std::optional<EventColumnId> ColumnMenus::columnToSortBy(unsigned command) {
    return columnOf(command, IDM_SORT_BY);
}

}  // namespace orvc
