// The logon dialog's window; what it does is LogonSequence's.
#pragma once

#include "session/logon_sequence.h"
#include "ui/dialog.h"

namespace orvc {

class CKSLogonDlg final : public ui::Dialog, private LogonView {
  public:
    CKSLogonDlg(const ui::Resources& resources, LogonLink& link, TrackingLog& log, const LogonEntry& entry);

    // Runs the dialog and returns how it ended. Above another dialog or a message box it takes no key that was meant
    // for that one.
    LogonOutcome run(HWND owner);

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    bool onTimer(std::uintptr_t timer) override;
    bool onPreview(MSG& message) override;

    LogonEntry readEntry() override;
    void setTitle(const std::string& title) override;
    void enableControls(bool enabled) override;
    void startCountdownTimer() override;
    void stopTimers() override;
    void handleWaitingMessages() override;
    void showError(const std::string& text) override;
    void selectPassword() override;
    bool mayCancel() override;
    void end(bool success) override;

    void showOptions(bool shown);

    LogonEntry entry_;
    LogonSequence sequence_;
    LogonOutcome outcome_;
    bool optionsShown_ = false;
    // The keyboard is ignored until no key has come for a moment.
    bool ignoresKeys_ = false;
    DWORD lastKey_ = 0;  // tick count
};

}  // namespace orvc
