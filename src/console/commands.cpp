#include "console/commands.h"

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <vector>

#include "dialogs/about_dialog.h"
#include "dialogs/configure_schedules_dialog.h"
#include "dialogs/preferences_dialog.h"
#include "dialogs/setup_event_dialog.h"
#include "resources/resource.h"
#include "support/text.h"
#include "ui/dialog.h"
#include "win32/collation.h"

namespace orvc {

std::span<const Commands::Command> Commands::all() {
    constexpr Shortcut none{0, 0};
    constexpr Shortcut insert{FVIRTKEY, VK_INSERT};
    constexpr Shortcut del{FVIRTKEY, VK_DELETE};
    // clang-format off
    static constexpr std::array<Command, 13> table{{
        // id                   shortcut  enabled                 does                           while a dialog is open
        {IDM_LOGOFF,              none,   &Commands::always,      &Commands::logoff,              false},
        {IDM_EXIT,                none,   &Commands::always,      &Commands::exitConsole,         true},
        {IDM_PREFERENCES,         none,   &Commands::isEditable,  &Commands::editPreferences,     false},
        {IDM_CREATE_EVENT,        insert, &Commands::isEditable,  &Commands::createEvent,         false},
        {IDM_MODIFY_EVENT,        none,   &Commands::isEditable,  &Commands::modifySelectedEvent, false},
        {IDM_DELETE_EVENT,        del,    &Commands::isEditable,  &Commands::deleteSelectedEvent, false},
        {IDM_SCHEDULES,           none,   &Commands::isEditable,  &Commands::editSchedules,       false},
        {IDM_RECORD_EVENTS,       none,   &Commands::always,      &Commands::recordEvents,        true},
        {IDM_CLEAR_FILE,          none,   &Commands::always,      &Commands::clearFile,           false},
        {IDM_OPEN_SUPPORT_FOLDER, none,   &Commands::always,      &Commands::openSupportFolder,   false},
        {IDM_HELP,                none,   &Commands::always,      &Commands::openHelp,            false},
        {IDM_ABOUT,               none,   &Commands::always,      &Commands::showAbout,           false},
        {IDM_TRAY_RESTORE,        none,   &Commands::always,      &Commands::restore,             true},
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
    std::vector<ACCEL> shortcuts;
    for (const Command& command : all())
        if (command.shortcut.key != 0)
            shortcuts.push_back({command.shortcut.modifiers, command.shortcut.key, static_cast<WORD>(command.id)});
    accelerators_.reset(CreateAcceleratorTableA(shortcuts.data(), static_cast<int>(shortcuts.size())));
    updateMenu();
    applyTraySetting();
}

bool Commands::run(unsigned id) {
    const Command* const command = find(id);
    if (command == nullptr) return false;
    // Ignore commands that arrive while a dialog is open, such as a second click.
    if (IsWindowEnabled(window_) == 0 && !command->whileDialogOpen) return true;
    if ((this->*command->isEnabled)()) (this->*command->run)();
    return true;
}

void Commands::runLater(unsigned id) const {
    if (isEnabled(id)) PostMessageA(window_, WM_COMMAND, id, 0);
}

bool Commands::isEnabled(unsigned id) const {
    const Command* const command = find(id);
    return command != nullptr && (this->*command->isEnabled)();
}

void Commands::updateMenu() const {
    for (const Command& command : all())
        EnableMenuItem(menu_, command.id, MF_BYCOMMAND | ((this->*command.isEnabled)() ? MF_ENABLED : MF_GRAYED));
}

// ---------------------------------------------------------------------------------------------------------------------
// The commands

void Commands::logoff() {
    s_.session.logoff();
}

void Commands::exitConsole() {
    s_.exit();
}

void Commands::restore() {
    ui::bringToForeground(window_);
}

void Commands::openHelp() {
    s_.help.openFirstPage(window_);
}

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

void Commands::createEvent() {
    runEditor(nullptr);
}

void Commands::modifySelectedEvent() {
    if (const EventRecord* event = s_.table.selectedRecord()) runEditor(event);
}

// `event` is copied by the editor: what becomes of it while the editor is open is found by key afterwards.
void Commands::runEditor(const EventRecord* event) {
    Session& session = s_.session;
    CSetupEventDlg editor(
        {s_.parts.resources, s_.parts.link, session.directory(), session.schedules(), session.fileReader(),
         s_.parts.log, s_.parts.clock, win32::makeSortKey, [&session] { return session.isConnected(); },
         [&session](Change change) { session.apply({std::move(change)}); }},
        event);
    if (!editor.run(window_)) return;
    if (const EventRecord* const saved = session.events().find(editor.key()))
        s_.list.select(s_.table.model().rowOf(*saved));
}

void Commands::editPreferences() {
    LocalSettings& settings = s_.parts.settings.values();
    CPreferencesDlg preferences(s_.parts.resources, s_.parts.log, settings.hideMinimized != 0,
                                s_.session.mailSettings());
    if (!preferences.run(window_)) return;
    settings.hideMinimized = preferences.minimizesToTray() ? 1 : 0;
    s_.parts.settings.save();
    applyTraySetting();
    if (s_.session.isConnected() && preferences.email().isChanged()) s_.session.apply({preferences.email().change()});
}

void Commands::applyTraySetting() {
    s_.tray.apply(s_.parts.settings.values().hideMinimized != 0);
}

void Commands::editSchedules() {
    Session& session = s_.session;
    CConfigureSchedulesDlg(s_.parts.resources, session.schedules(), win32::makeSortKey, [&session](Change change) {
        session.apply({std::move(change)});
    }).runModal(window_);
}

void Commands::deleteSelectedEvent() {
    const EventRecord* selected = s_.table.selectedRecord();
    if (selected == nullptr) return;
    const std::string key = selected->key;
    const ui::Resources& texts = s_.parts.resources;
    if (!ui::askYesNo(window_, texts.text(IDS_DELETE_EVENT), texts.text(IDS_DELETE_EVENT_CAPTION))) return;
    // While the question was open the Event may have moved or gone, or the logon have ended. What was asked before a
    // reload may be answered in it.
    const EventRecord* const record = s_.session.events().findAny(key);
    if (record == nullptr || !s_.session.isConnected()) return;
    const auto row = s_.table.model().rowOf(*record);
    s_.session.apply({EventChange{*record, std::nullopt, {}}});
    const std::size_t size = s_.table.size();
    s_.list.select(row && size > 0 ? std::optional(std::min(*row, size - 1)) : std::nullopt);
}

}  // namespace orvc
