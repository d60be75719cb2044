// The message loop that every dialog runs, with work for its idle moments.
#pragma once

#include <windows.h>

#include <functional>

namespace orvc::ui {

// Work that waits until no message does. Returns true when there is more of it. Called on the user-interface thread by
// whichever dialog's loop runs; a menu or a message box runs a loop of Windows' own, which does not call it.
using IdleWork = std::function<bool()>;
void setIdleWork(IdleWork work);

// Sees a message before it is dispatched; returns true to keep it.
using MessageFilter = std::function<bool(MSG& message)>;

// Handles messages until `isDone` says so, or the thread is asked to quit (which it passes on).
void runMessageLoop(const std::function<bool()>& isDone, const MessageFilter& filter);

// Handles the messages that wait now, dialog keys included.
void handleWaitingMessages();

}  // namespace orvc::ui
