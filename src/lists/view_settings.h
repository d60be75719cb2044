// How the operator has set up the Event list, as the settings keep it.
#pragma once

#include <array>
#include <optional>

#include "lists/event_columns.h"
#include "lists/event_order.h"
#include "support/local_settings.h"

namespace orvc {

inline constexpr int kLeastColumnWidth = 24;  // pixels at 96 DPI
inline constexpr int kGreatestColumnWidth = 2000;

struct ViewColumn {
    EventColumnId id = EventColumnId::kName;
    bool isShown = false;
    int width = 0;  // pixels at 96 DPI; 0 = not chosen, the column has its share

    friend bool operator==(const ViewColumn&, const ViewColumn&) = default;
};

// Each column stands here once, the name is shown, and widths lie between the limits above.
struct ViewSettings {
    ViewSettings();  // as before anything is chosen

    std::array<ViewColumn, kEventColumnCount> columns;  // from left to right
    std::optional<EventSortKey> firstSort;              // nothing = the given order
    std::optional<EventSortKey> secondSort;
    bool showsDetail = true;

    friend bool operator==(const ViewSettings&, const ViewSettings&) = default;
};

// Whatever the settings hold: what makes no sense counts as not chosen. A column that they do not name stands at the
// end, shown or not as it would be at first.
ViewSettings readView(const LocalSettings& settings);
void writeView(LocalSettings& settings, const ViewSettings& view);

}  // namespace orvc
