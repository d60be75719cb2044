// Steps of the main window's start.
#pragma once

#include <windows.h>

#include "console/commands.h"
#include "console/console_parts.h"
#include "session/session.h"

namespace orvc {

// Adds the About box to the window's system menu.
void extendSystemMenu(HWND window, const ui::Resources& resources);

// Loads and binds the pass-through library, opens the link with the session as receiver of its events, and loads the
// settings of the mode that the library asks for. Returns false when there is no scratch folder afterwards, in which
// case the operator is told. `library` takes what the About box shows.
bool openLink(const ConsoleParts& parts, Session& session, LibraryInfo& library);

// Gives the window the size of the last run, never larger than the screen, which may be another one today.
void restoreSize(HWND window, const LocalSettings& settings);
// Keeps the window's size for the next run.
void rememberSize(HWND window, LocalSettings& settings);

}  // namespace orvc
