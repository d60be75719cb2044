// What the logon dialog does, without its window: attempts, silent first failure, countdown and results in words.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "link/server_link.h"
#include "session/logon_entry.h"
#include "support/string_table.h"
#include "support/tracking_log.h"

namespace orvc {

// The dialog as the sequence sees it. User-interface thread.
class LogonView {
  public:
    virtual ~LogonView() = default;
    // The fields as they are typed now.
    virtual LogonEntry readEntry() = 0;
    virtual void setTitle(const std::string& title) = 0;
    // All controls but Cancel.
    virtual void enableControls(bool enabled) = 0;
    // Ticks once a second until stopped.
    virtual void startCountdownTimer() = 0;
    virtual void stopTimers() = 0;
    // Handles the messages that wait now, so that what was set is painted.
    virtual void handleWaitingMessages() = 0;
    virtual void showError(const std::string& text) = 0;
    // Selects the whole password and puts the focus there.
    virtual void selectPassword() = 0;
    // Cancelling ends the console: asks, when that loses what was entered elsewhere.
    virtual bool mayCancel() = 0;
    // Ends the dialog: logged on, or cancelled.
    virtual void end(bool success) = 0;
};

// The IPv4 address in network byte order that a dotted text stands for.
using AddressReader = std::function<std::uint32_t(const std::string& text)>;

// Thread: user-interface thread. Lives as long as its dialog; what the constructor takes outlives it.
class LogonSequence {
  public:
    LogonSequence(LogonView& view, LogonLink& link, const StringTable& strings, TrackingLog& log,
                  AddressReader readAddress);

    // The dialog is open: logs on at once when it may and the saved credentials are there.
    void begin(const LogonEntry& entry);
    // The Logon button.
    void attempt();
    // One second of the countdown.
    void onTick();
    // The Cancel button: ends a countdown, or the dialog.
    void cancel();

  private:
    void onSuccess(bool isAdministrator);
    void onFailure(std::int32_t code, const LogonEntry& entry);
    std::string describe(std::int32_t code, const LogonEntry& entry) const;
    void becomeIdle();

    LogonView& view_;
    LogonLink& link_;
    const StringTable& strings_;
    TrackingLog& log_;
    AddressReader readAddress_;
    int attempts_ = 0;  // that failed
    int countdown_ = 0;
    bool retry_ = false;
    bool attempting_ = false;
};

// Port text as the socket address takes it: decimal, its low 16 bits.
std::uint16_t parsePort(const std::string& text);

}  // namespace orvc
