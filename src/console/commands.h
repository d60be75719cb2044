// What the main window's commands do, and when they can be given.
#pragma once

#include <windows.h>

#include <functional>
#include <span>
#include <string>

#include "console/console_parts.h"
#include "console/event_commands.h"
#include "console/help.h"
#include "console/tray.h"
#include "console/workbench.h"
#include "session/session.h"
#include "win32/handles.h"

namespace orvc {

// What the About box shows of the pass-through library.
struct LibraryInfo {
    LibraryVersion version;
    std::string fileVersion;
};

// Purpose: one table of all commands. The menus' state and what the status bar says of a greyed item come from it; the
// menus' words are the language library's, their keys those of view/shortcuts.h. Thread: user-interface thread.
// Lifetime: what the constructor takes outlives it.
class Commands {
  public:
    struct Surroundings {
        const ConsoleParts& parts;
        Session& session;
        EventCommands& events;
        Workbench& workbench;
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

    // The text that says why a command cannot be given now; 0 when it can, or is none.
    unsigned whyNot(unsigned id) const;

    // Greys what cannot be done now and ticks what is on.
    void updateMenu() const;
    // A shortcut for the main window; false when the message is none, or belongs to the box that has the keyboard.
    bool translate(MSG& message) const;
    // Shows the menu of the selected Events at a point of the screen.
    void showEventMenu(POINT place);

    // Switches the recording on or off and shows it in the menus.
    void recordEvents();

  private:
    enum class When {
        kNoDialogOpen,
        kAlways,          // also from the tray icon's menu while a dialog is open
        kNotWhileTyping,  // its key belongs to a box that has the keyboard
    };
    struct Command {
        unsigned id;
        unsigned (*whyNot)(const Commands&);  // null: it can always be given
        void (*run)(Commands&);
        When when = When::kNoDialogOpen;
    };
    static std::span<const Command> all();
    static const Command* find(unsigned id);
    void addShortcuts(HMENU menu) const;

    void editPreferences();
    void clearFile();
    void openSupportFolder();
    void showAbout();
    void applyTraySetting();

    Surroundings s_;
    HWND window_ = nullptr;
    HMENU menu_ = nullptr;
    win32::UniqueMenu eventMenu_;
    win32::UniqueAccelerators accelerators_;
};

}  // namespace orvc
