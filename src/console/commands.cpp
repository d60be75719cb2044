#include "console/commands.h"

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <vector>

#include "dialogs/about_dialog.h"
#include "dialogs/preferences_dialog.h"
#include "resources/resource.h"
#include "support/text.h"
#include "ui/dialog.h"
#include "view/shortcuts.h"

namespace orvc {

std::span<const Commands::Command> Commands::all() {
    constexpr auto always = nullptr;
    using C = Commands;
    constexpr auto editable = [](const C& c) { return c.s_.events.whyNotEditable(); };
    constexpr auto selected = [](const C& c) { return c.s_.events.whyNotSelected(); };
    constexpr auto hasSelection = [](const C& c) { return c.s_.workbench.whyNotSelected(); };
    constexpr auto hasSource = [](const C& c) { return c.s_.workbench.whyNoPlace(EventColumnId::kSource); };
    constexpr auto hasDestination = [](const C& c) { return c.s_.workbench.whyNoPlace(EventColumnId::kDestination); };
    constexpr auto hasProblems = [](const C& c) { return c.s_.workbench.whyNoProblems(); };
    constexpr When anytime = When::kAlways;
    constexpr When notTyping = When::kNotWhileTyping;
    // clang-format off
    static const std::array<Command, 30> table{{
        // id                     why not         does
        {IDM_LOGOFF,              always,         [](C& c) { c.s_.session.logoff(); }},
        {IDM_EXIT,                always,         [](C& c) { c.s_.exit(); }, anytime},
        {IDM_DUPLICATE_EVENT,     selected,       [](C& c) { c.s_.events.duplicate(); }},
        {IDM_ENABLE_EVENTS,       selected,       [](C& c) { c.s_.events.setDisabled(false); }},
        {IDM_DISABLE_EVENTS,      selected,       [](C& c) { c.s_.events.setDisabled(true); }},
        {IDM_ASSIGN_SCHEDULE,     selected,       [](C& c) { c.s_.events.assignSchedule(); }},
        {IDM_COPY,                hasSelection,   [](C& c) { c.s_.events.copy(); }, notTyping},
        {IDM_SELECT_ALL,          always,         [](C& c) { c.s_.workbench.selectAll(); }, notTyping},
        {IDM_FIND,                always,         [](C& c) { c.s_.workbench.find(); }},
        {IDM_SHOW_DETAIL,         always,         [](C& c) { c.s_.workbench.toggleDetail(); }},
        {IDM_SHOW_ALL,            always,         [](C& c) { c.s_.workbench.show(EventState::kAll); }},
        {IDM_SHOW_PROBLEMS,       always,         [](C& c) { c.s_.workbench.show(EventState::kWithProblems); }},
        {IDM_SHOW_DISABLED,       always,         [](C& c) { c.s_.workbench.show(EventState::kDisabled); }},
        {IDM_NEXT_PROBLEM,        hasProblems,    [](C& c) { c.s_.workbench.nextProblem(); }},
        {IDM_SORT_AGAIN,          always,         [](C& c) { c.s_.workbench.sortAgain(); }},
        {IDM_SAME_SOURCE,         hasSource,      [](C& c) { c.s_.workbench.showSame(EventColumnId::kSource); }},
        {IDM_SAME_DESTINATION,    hasDestination, [](C& c) { c.s_.workbench.showSame(EventColumnId::kDestination); }},
        {IDM_SAME_SCHEDULE,       hasSelection,   [](C& c) { c.s_.workbench.showSame(EventColumnId::kSchedule); }},
        {IDM_NEXT_PANE,           always,         [](C& c) { c.s_.workbench.nextPane(); }},
        {IDM_PREFERENCES,         editable,       [](C& c) { c.editPreferences(); }},
        {IDM_CREATE_EVENT,        editable,       [](C& c) { c.s_.events.create(); }, notTyping},
        {IDM_MODIFY_EVENT,        selected,       [](C& c) { c.s_.events.modify(); }},
        {IDM_DELETE_EVENT,        selected,       [](C& c) { c.s_.events.erase(); }, notTyping},
        {IDM_SCHEDULES,           editable,       [](C& c) { c.s_.events.editSchedules(); }},
        {IDM_RECORD_EVENTS,       always,         [](C& c) { c.recordEvents(); }, anytime},
        {IDM_CLEAR_FILE,          always,         [](C& c) { c.clearFile(); }},
        {IDM_OPEN_SUPPORT_FOLDER, always,         [](C& c) { c.openSupportFolder(); }},
        {IDM_HELP,                always,         [](C& c) { c.s_.help.openFirstPage(c.window_); }},
        {IDM_ABOUT,               always,         [](C& c) { c.showAbout(); }},
        {IDM_TRAY_RESTORE,        always,         [](C& c) { ui::bringToForeground(c.window_); }, anytime},
    }};
    // clang-format on
    return table;
}

const Commands::Command* Commands::find(unsigned id) {
    const auto found = std::ranges::find(all(), id, &Command::id);
    return found != all().end() ? &*found : nullptr;
}

void Commands::attach(HWND window, HMENU menu) {
    window_ = window;
    menu_ = menu;
    eventMenu_ = s_.parts.resources.loadMenu(IDR_EVENT_MENU);
    std::vector<ACCEL> accelerators;
    for (const Shortcut& shortcut : shortcuts())
        accelerators.push_back(
            {static_cast<BYTE>(FVIRTKEY | (shortcut.ctrl ? FCONTROL : 0) | (shortcut.shift ? FSHIFT : 0)),
             static_cast<WORD>(shortcut.key), static_cast<WORD>(shortcut.command)});
    accelerators_.reset(CreateAcceleratorTableA(accelerators.data(), static_cast<int>(accelerators.size())));
    addShortcuts(menu_);
    addShortcuts(eventMenu_.get());
    updateMenu();
    applyTraySetting();
}

void Commands::addShortcuts(HMENU menu) const {
    for (const Shortcut& shortcut : shortcuts()) {
        const UINT id = shortcut.command;
        std::array<char, 128> text{};
        if (GetMenuStringA(menu, id, text.data(), static_cast<int>(text.size()), MF_BYCOMMAND) == 0) continue;
        const std::string both = std::string(text.data()) + "\t" + shortcutText(s_.parts.resources, shortcut);
        ModifyMenuA(menu, id, MF_BYCOMMAND | MF_STRING, id, both.c_str());
    }
}

bool Commands::run(unsigned id) {
    if (s_.workbench.runColumnCommand(id)) return true;
    const Command* const command = find(id);
    if (command == nullptr) return false;
    // Ignore commands that arrive while a dialog is open, such as a second click.
    if (IsWindowEnabled(window_) == 0 && command->when != When::kAlways) return true;
    if (whyNot(id) == 0) command->run(*this);
    return true;
}

void Commands::runLater(unsigned id) const {
    if (whyNot(id) == 0) PostMessageA(window_, WM_COMMAND, id, 0);
}

unsigned Commands::whyNot(unsigned id) const {
    const Command* const command = find(id);
    return command != nullptr && command->whyNot != nullptr ? command->whyNot(*this) : 0;
}

void Commands::updateMenu() const {
    for (const HMENU menu : {menu_, eventMenu_.get()})
        for (const Command& command : all())
            EnableMenuItem(menu, command.id, MF_BYCOMMAND | (whyNot(command.id) == 0 ? MF_ENABLED : MF_GRAYED));
    s_.workbench.updateMenu(menu_);
}

bool Commands::translate(MSG& message) const {
    if (!accelerators_ || message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
    if (s_.workbench.isTyping() && message.message == WM_KEYDOWN) {
        const bool isCtrlDown = GetKeyState(VK_CONTROL) < 0;
        for (const Shortcut& shortcut : shortcuts()) {
            if (static_cast<WPARAM>(shortcut.key) != message.wParam || shortcut.ctrl != isCtrlDown) continue;
            const Command* const command = find(shortcut.command);
            if (command != nullptr && command->when == When::kNotWhileTyping) return false;
        }
    }
    return TranslateAcceleratorA(window_, accelerators_.get(), &message) != 0;
}

void Commands::showEventMenu(POINT place) {
    updateMenu();
    const HMENU menu = GetSubMenu(eventMenu_.get(), 0);
    SetMenuDefaultItem(menu, IDM_MODIFY_EVENT, FALSE);
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, place.x, place.y, 0, window_, nullptr);
}

// ---------------------------------------------------------------------------------------------------------------------
// The commands

void Commands::recordEvents() {
    TrackingLog& log = s_.parts.log;
    log.toggleRecordEvents();
    const UINT check = MF_BYCOMMAND | (log.isRecording() ? MF_CHECKED : MF_UNCHECKED);
    CheckMenuItem(menu_, IDM_RECORD_EVENTS, check);
    CheckMenuItem(s_.tray.menu(), IDM_RECORD_EVENTS, check);
    log.OpenCloseDebugFile(false, false);
    s_.parts.settings.save();
}

void Commands::clearFile() {
    const ui::Resources& texts = s_.parts.resources;
    if (!ui::askYesNo(window_, texts.text(IDS_CLEAR_FILE), texts.text(IDS_CLEAR_FILE_CAPTION))) return;
    if (!s_.parts.log.clear())
        ui::showMessage(window_, texts.text(IDS_FILE_NOT_CLEARED), texts.text(IDS_ERROR_CAPTION));
}

void Commands::openSupportFolder() {
    ShellExecuteA(window_, "open", s_.parts.log.supportFolder().c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void Commands::showAbout() {
    const ui::Resources& texts = s_.parts.resources;
    const LibraryVersion& version = s_.library.version;
    CAboutDlg about(
        texts,
        {fillIn(texts.text(IDS_ABOUT_PROGRAM), {s_.programVersion()}),
         fillIn(texts.text(IDS_ABOUT_INTERFACE),
                {static_cast<long>(version.major), static_cast<long>(version.minor), static_cast<long>(version.build)}),
         fillIn(texts.text(IDS_ABOUT_LIBRARY), {s_.library.fileVersion})});
    about.runModal(window_);
}

void Commands::editPreferences() {
    LocalSettings& settings = s_.parts.settings.values();
    CPreferencesDlg preferences(s_.parts.resources, s_.parts.log, settings.hideMinimized != 0,
                                s_.session.mailSettings(), [this] { return s_.workbench.linkNote(); });
    if (!preferences.run(window_)) return;
    settings.hideMinimized = preferences.minimizesToTray() ? 1 : 0;
    s_.parts.settings.save();
    applyTraySetting();
    if (s_.session.isConnected() && preferences.email().isChanged()) s_.events.store(preferences.email().change());
}

void Commands::applyTraySetting() {
    s_.tray.apply(s_.parts.settings.values().hideMinimized != 0);
}

}  // namespace orvc
