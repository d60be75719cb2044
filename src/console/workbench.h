// What stands around the Event list: filter, details, status bar, banner, and a word where the list is empty.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "console/column_menus.h"
#include "console/console_parts.h"
#include "console/event_commands.h"
#include "console/event_list_view.h"
#include "lists/event_filter.h"
#include "session/session.h"
#include "ui/status_bar.h"
#include "view/window_texts.h"

namespace orvc {

// Purpose: lays the main window out, finds and shows Events, and says how things stand.
// Thread: user-interface thread. Lifetime: what the constructor takes outlives it.
class Workbench {
  public:
    struct Surroundings {
        const ConsoleParts& parts;
        Session& session;
        EventTable& table;
        EventListView& list;
        EventCommands& events;
        std::function<std::string(const EventRecord&)> describe;  // the lines about a selected Event
    };
    explicit Workbench(Surroundings surroundings) : s_(std::move(surroundings)) {}

    // The main window is there, with its controls and its menu.
    void attach(HWND window, HMENU menu, int dpi);
    void layOut(int dpi);
    SIZE minimumSize(int dpi) const;

    // Brings everything around the list up to date. Cheap where nothing has changed.
    void refresh();
    // What the banner says, for dialogs that are open.
    std::string linkNote() const;
    // Shows a change of the link soon.
    void refreshSoon() const { SetTimer(window_, timer::kStatus, 0, nullptr); }
    // One sentence about what was done last.
    void tell(const std::string& sentence);
    // What the status bar says of a menu item; nothing when the menu closes.
    void showHint(const std::optional<std::string>& hint) { status_.showHint(hint); }
    void setLogonId(const std::string& logonId) { logonId_ = logonId; }

    // ---- Commands

    void find();
    void selectAll() { s_.list.selectAll(); }
    void toggleDetail();
    // Keeps columns, order and detail for the next start.
    void saveView();
    void show(EventState state);
    void nextProblem();
    void sortAgain() { s_.list.sortAgain(); }
    // Shows the Events that have the same device, group or Schedule as the selected one.
    void showSame(EventColumnId column);
    void nextPane();
    // Esc: clears the filter; with none set, the list gets the keyboard.
    void escape();
    // Enter; false when it is the list's.
    bool enter();
    // Shows or hides a column, or sorts by it. False when `id` is no such command.
    bool runColumnCommand(unsigned id);

    // Ids of the texts that say why not; 0 when they can be given.
    unsigned whyNotSelected();
    unsigned whyNoPlace(EventColumnId column);
    unsigned whyNoProblems() const;

    void updateMenu(HMENU menu) const;
    // A box has the keyboard in which one types or selects text.
    bool isTyping() const;

    // ---- Messages

    bool onCommand(unsigned id, unsigned notification);
    std::optional<LRESULT> onNotify(NMHDR& header);
    // The columns' menu, when the place is the list's header.
    bool onContextMenu(HWND control, POINT place);
    // The brush for a control's background; null for one that is not the workbench's.
    HBRUSH colorOf(HWND control, HDC context) const;
    // Down in the filter box goes to the list.
    bool onPreview(const MSG& message);
    void onStatusTimer() { refresh(); }

  private:
    HWND control(unsigned id) const { return GetDlgItem(window_, static_cast<int>(id)); }
    void applyFilter();
    void setFilter(const std::string& text, EventState state);
    LinkStatus linkStatus() const;
    ListCounts counts() const;
    void showTexts();
    void showBanner(const std::string& text);
    void showEmptyList(const std::string& text);
    void showDetail(const ListCounts& counts);
    void goToList(bool selectFirst);

    Surroundings s_;
    HWND window_ = nullptr;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
    ui::StatusBar status_;
    ColumnMenus columnMenus_;
    std::string logonId_;
    std::string filterText_;
    EventState state_ = EventState::kAll;
    std::string banner_;
    std::string detail_;
    std::string told_;
    std::string emptyText_;
    std::optional<std::size_t> statePart_;  // of the status bar: how many are disabled and have problems
    bool isFiltering_ = false;              // the controls are changed by us, not by the operator
};

}  // namespace orvc
