// Small helpers for the controls that dialogs fill.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace orvc::win32 {

// Fills a drop-down list with these texts in their order and selects one (-1 = none), in one repaint. No notification
// is sent.
void fillDropDown(HWND dropDown, const std::vector<std::string>& texts, int selected);

// The selected entry; -1 when there is none.
int selectedEntry(HWND dropDown);

// Lets an edit take as much text as memory holds; by itself it stops at 32,767 characters.
void liftTextLimit(HWND edit);

// The notifications of a drop-down list and of an edit whose change the operator made.
inline bool isSelectionChange(unsigned notification) {
    return notification == CBN_SELCHANGE;
}
inline bool isEditChange(unsigned notification) {
    return notification == EN_CHANGE;
}

}  // namespace orvc::win32
