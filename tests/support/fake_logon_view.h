// The logon dialog's window: writes what it shows into the journal.
#pragma once

#include "journal.h"
#include "session/logon_sequence.h"

namespace orvc {

class FakeLogonView final : public LogonView {
  public:
    explicit FakeLogonView(Journal& journal) : journal_(journal) {}
    LogonEntry readEntry() override { return entry; }
    void setTitle(const std::string& title) override { journal_.add("title " + title); }
    void enableControls(bool enabled) override { journal_.add(enabled ? "enable" : "disable"); }
    void startCountdownTimer() override { journal_.add("start countdown"); }
    void stopTimers() override { journal_.add("stop timers"); }
    void handleWaitingMessages() override {
        if (onMessages) onMessages();
    }
    void showError(const std::string& text) override { journal_.add("error " + text); }
    void selectPassword() override { journal_.add("select password"); }
    bool mayCancel() override { return cancels; }
    void end(bool success) override { journal_.add(success ? "end: logged on" : "end: cancelled"); }

    LogonEntry entry;
    bool cancels = true;
    std::function<void()> onMessages;

  private:
    Journal& journal_;
};

}  // namespace orvc
