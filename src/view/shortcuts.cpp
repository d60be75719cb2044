#include "view/shortcuts.h"

#include <array>

#include "resources/resource.h"

namespace orvc {
namespace {

// Windows' codes; this file knows nothing else of Windows.
constexpr int kInsert = 0x2D;
constexpr int kDelete = 0x2E;
constexpr int kF1 = 0x70;
constexpr int kF12 = kF1 + 11;

constexpr Shortcut key(unsigned command, int key) {
    return {command, false, false, key};
}
constexpr Shortcut ctrl(unsigned command, char letter) {
    return {command, true, false, letter};
}
constexpr Shortcut ctrlShift(unsigned command, char letter) {
    return {command, true, true, letter};
}

constexpr std::array kShortcuts{
    key(IDM_CREATE_EVENT, kInsert),
    key(IDM_DELETE_EVENT, kDelete),
    ctrl(IDM_DUPLICATE_EVENT, 'D'),
    ctrl(IDM_ENABLE_EVENTS, 'E'),
    ctrl(IDM_COPY, 'C'),
    ctrl(IDM_SELECT_ALL, 'A'),
    ctrl(IDM_FIND, 'F'),
    ctrl(IDM_SHOW_ALL, '1'),
    ctrl(IDM_SHOW_PROBLEMS, '2'),
    ctrl(IDM_SHOW_DISABLED, '3'),
    key(IDM_SORT_AGAIN, kF1 + 4),
    key(IDM_NEXT_PANE, kF1 + 5),
    ctrlShift(IDM_DISABLE_EVENTS, 'E'),
    key(IDM_NEXT_PROBLEM, kF1 + 7),
};

}  // namespace

std::span<const Shortcut> shortcuts() {
    return kShortcuts;
}

std::string shortcutText(const StringTable& strings, const Shortcut& shortcut) {
    std::string text;
    if (shortcut.ctrl) text += strings.text(IDS_KEY_CTRL);
    if (shortcut.shift) text += strings.text(IDS_KEY_SHIFT);
    if (shortcut.key == kInsert) return text + strings.text(IDS_KEY_INSERT);
    if (shortcut.key == kDelete) return text + strings.text(IDS_KEY_DELETE);
    if (shortcut.key >= kF1 && shortcut.key <= kF12) return text + "F" + std::to_string(shortcut.key - kF1 + 1);
    return text + static_cast<char>(shortcut.key);
}

}  // namespace orvc
