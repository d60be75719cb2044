// The keys of the main window's commands.
#pragma once

#include <span>
#include <string>

#include "support/string_table.h"

namespace orvc {

// One command's key, pressed together with Ctrl, with Shift, with both or alone.
struct Shortcut {
    unsigned command;  // id of the menu item
    bool ctrl;
    bool shift;
    int key;  // Windows' virtual-key code; those of letters and digits are the characters themselves
};

// The menus, the accelerators and the help's page on the keyboard all go by this table. No key is there twice.
std::span<const Shortcut> shortcuts();

// "Ctrl+Shift+E", in the words of the language.
std::string shortcutText(const StringTable& strings, const Shortcut& shortcut);

}  // namespace orvc
