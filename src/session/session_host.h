// What a session asks of the window that it runs in.
#pragma once

#include <cstdint>
#include <string>

#include "link/server_link.h"
#include "session/logon_entry.h"

namespace orvc {

// All calls come on the user-interface thread.
class SessionHost {
  public:
    virtual ~SessionHost() = default;

    virtual void startTimer(std::uintptr_t timer, std::uint32_t milliseconds) = 0;
    virtual void stopTimer(std::uintptr_t timer) = 0;

    // Runs the logon dialog, which logs on through `link`; messages are handled meanwhile.
    virtual LogonOutcome runLogonDialog(const LogonEntry& entry, LogonLink& link) = 0;
    // The settings changed that are kept for the next start: store them.
    virtual void saveSettings() = 0;
    // The main window's title: with the logon ID while logged on, without for an empty one.
    virtual void showTitle(const std::string& logonId) = 0;
    // The lists were emptied or filled: show it.
    virtual void refreshEventList() = 0;
    virtual void openPleaseWait() = 0;
    virtual void closePleaseWait() = 0;
    // Ends the main window's modal run.
    virtual void endMainWindow() = 0;
    virtual void removeKeyboardHook() = 0;
    virtual void removeTrayIcon() = 0;

    // Waits while the window paints and events are delivered; no input, no timers.
    virtual void pause(std::uint32_t milliseconds) = 0;

    // Name of the network adapter through which the server is reached; empty when there is none.
    virtual std::string findAdapterName(const std::string& serverAddress) = 0;
    // The program's own file version.
    virtual std::string programVersion() = 0;
};

}  // namespace orvc
