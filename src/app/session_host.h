// What a session asks of the window that it runs in.
#pragma once

#include <cstdint>
#include <string>

namespace orvc {

// The main window's timers. Periods are in milliseconds.
namespace timer {
inline constexpr std::uintptr_t kLogon = 1;              // 250: doLogon
inline constexpr std::uintptr_t kIdle = 2;               // 1000: no action
inline constexpr std::uintptr_t kUnused = 3;             // only ever stopped
inline constexpr std::uintptr_t kSubscriptionStart = 4;  // 10, once
inline constexpr std::uintptr_t kReload = 5;             // 100, once
inline constexpr std::uintptr_t kReloadWait = 6;         // 100
inline constexpr std::uintptr_t kCompletionWait = 7;     // 1
inline constexpr std::uintptr_t kHandOver = 8;           // 10: goes on with undelivered events

inline constexpr std::uint32_t kLogonPeriod = 250;
inline constexpr std::uint32_t kIdlePeriod = 1000;
inline constexpr std::uint32_t kSubscriptionStartPeriod = 10;
inline constexpr std::uint32_t kReloadPeriod = 100;
inline constexpr std::uint32_t kReloadWaitPeriod = 100;
inline constexpr std::uint32_t kCompletionWaitPeriod = 1;
inline constexpr std::uint32_t kHandOverPeriod = 10;
}  // namespace timer

// What the logon dialog starts from and ends with.
struct LogonEntry {
    std::string logonId;
    std::string password;
    std::string address;  // dotted IPv4
    std::string port;     // decimal
    bool saveCredentials = false;
    bool mayLogOnAtOnce = false;  // with saved credentials, without a click
};

struct LogonOutcome {      // neither = the dialog went away without the operator
    bool success = false;  // logged on with administrator rights
    bool cancelled = false;
    LogonEntry entry;
};

// All calls come on the user-interface thread.
class SessionHost {
  public:
    virtual ~SessionHost() = default;

    virtual void startTimer(std::uintptr_t timer, std::uint32_t milliseconds) = 0;
    virtual void stopTimer(std::uintptr_t timer) = 0;

    // Runs the logon dialog; messages are handled meanwhile.
    virtual LogonOutcome runLogonDialog(const LogonEntry& entry) = 0;
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
    // Handles every message that waits, input included, then sleeps.
    virtual void handleMessagesAndSleep(std::uint32_t milliseconds) = 0;

    // Name of the network adapter through which the server is reached; empty when there is none.
    virtual std::string findAdapterName(const std::string& serverAddress) = 0;
    // The program's own file version.
    virtual std::string programVersion() = 0;
};

}  // namespace orvc
