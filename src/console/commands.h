// What the main window's commands do, and when they can be given.
#pragma once

#include <windows.h>

#include <functional>
#include <span>
#include <string>

#include "console/console_parts.h"
#include "console/event_list_view.h"
#include "console/help.h"
#include "console/tray.h"
#include "session/session.h"
#include "win32/handles.h"

namespace orvc {

// What the About box shows of the pass-through library.
struct LibraryInfo {
    LibraryVersion version;
    std::string fileVersion;
};

// Purpose: one table of all commands; the menus' state and the shortcuts come from it.
// Thread: user-interface thread. Lifetime: what the constructor takes outlives it.
class Commands {
  public:
    struct Surroundings {
        const ConsoleParts& parts;
        Session& session;
        EventTable& table;
        EventListView& list;
        Tray& tray;
        Help& help;
        const LibraryInfo& library;
        std::function<void()> exit;
        std::function<std::string()> programVersion;
    };
    explicit Commands(const Surroundings& surroundings) : s_(surroundings) {}

    // The main window is there, with its menu.
    void attach(HWND window, HMENU menu);

    // Does what a menu item or a shortcut asks for, if it can be done now. Returns false when `id` is no command.
    bool run(unsigned id);
    // The same for a gesture in the list, which the control finishes first.
    void runLater(unsigned id) const;
    bool isEnabled(unsigned id) const;

    // Greys what cannot be done now.
    void updateMenu() const;
    // The shortcuts, for TranslateAccelerator().
    HACCEL accelerators() const { return accelerators_.get(); }

    // Switches the recording on or off and shows it in the menus.
    void recordEvents();

  private:
    struct Shortcut {
        BYTE modifiers;  // of ACCEL
        WORD key;        // 0 = none
    };
    struct Command {
        unsigned id;
        Shortcut shortcut;
        bool (Commands::*isEnabled)() const;
        void (Commands::*run)();
        bool whileDialogOpen;  // the tray icon's menu gives these also then
    };
    static std::span<const Command> all();
    static const Command* find(unsigned id);

    bool always() const { return true; }
    bool isEditable() const { return s_.session.isEditable(); }

    void logoff();
    void exitConsole();
    void editPreferences();
    void createEvent();
    void modifySelectedEvent();
    void deleteSelectedEvent();
    void editSchedules();
    void clearFile();
    void openSupportFolder();
    void openHelp();
    void showAbout();
    void restore();
    void runEditor(const EventRecord* event);
    void applyTraySetting();

    Surroundings s_;
    HWND window_ = nullptr;
    HMENU menu_ = nullptr;
    win32::UniqueAccelerators accelerators_;
};

}  // namespace orvc
