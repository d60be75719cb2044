// Small helpers for the controls that dialogs fill.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orvc::ui {

// Empties and fills a drop-down list, in one repaint. No notification is sent.
class DropDownFill {
  public:
    // Empties the list. `count` entries are to come.
    DropDownFill(HWND dropDown, std::size_t count);
    // Shows what was added.
    ~DropDownFill();
    DropDownFill(const DropDownFill&) = delete;
    DropDownFill& operator=(const DropDownFill&) = delete;

    void add(const std::string& text) { SendMessageA(target_, add_, 0, reinterpret_cast<LPARAM>(text.c_str())); }
    // -1 = none.
    void select(int entry) { SendMessageA(dropDown_, CB_SETCURSEL, static_cast<WPARAM>(entry), 0); }

  private:
    HWND dropDown_;
    HWND list_;  // inside it; null when there is none
    HWND target_;
    UINT add_;
};

// Fills a drop-down list with the entries' texts in their order and selects one (-1 = none).
template <typename Entries, typename TextOf = std::identity>
void fillDropDown(HWND dropDown, const Entries& entries, int selected, TextOf textOf = {}) {
    DropDownFill fill(dropDown, entries.size());
    for (const auto& entry : entries)
        fill.add(std::invoke(textOf, entry));
    fill.select(selected);
}

// The selected entry; -1 when there is none.
int selectedEntry(HWND dropDown);

// Selects an entry, unless it is selected already; one that the list does not have clears the selection.
void selectEntry(HWND dropDown, std::int64_t entry);

// Ctrl+Tab and Ctrl+Shift+Tab in a dialog with tabs: the tab that the key chooses, after the last one the first again.
// Nothing for another message.
std::optional<int> tabChosenBy(const MSG& message, HWND tabs);

// Lets an edit take as much text as memory holds; by itself it stops at 32,767 characters.
void liftTextLimit(HWND edit);

// The notifications of a drop-down list and of an edit whose change the operator made.
inline bool isSelectionChange(unsigned notification) {
    return notification == CBN_SELCHANGE;
}
inline bool isEditChange(unsigned notification) {
    return notification == EN_CHANGE;
}

}  // namespace orvc::ui
