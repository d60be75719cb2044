// The menus that show, hide and sort by the columns of the Event list.
#pragma once

#include <windows.h>

#include <optional>
#include <span>

#include "lists/event_columns.h"
#include "lists/event_order.h"
#include "lists/view_settings.h"
#include "support/string_table.h"

namespace orvc {

// Thread: user-interface thread.
class ColumnMenus {
  public:
    // Puts both into the main menu, at the top of the popup that has the item IDM_SHOW_DETAIL. The main menu owns them.
    void attach(HMENU menu, const StringTable& strings);

    // Ticks the columns that are shown and the one that the list is sorted by.
    void update(const ViewSettings& view, std::span<const EventSortKey> sort) const;
    // Shows the columns at a point of the screen.
    void show(HWND owner, POINT place) const;

    // The column that a command shows or hides, or sorts by; nothing for another command.
    static std::optional<EventColumnId> columnToToggle(unsigned command);
    static std::optional<EventColumnId> columnToSortBy(unsigned command);

  private:
    HMENU columns_ = nullptr;
    HMENU sort_ = nullptr;
};

}  // namespace orvc
