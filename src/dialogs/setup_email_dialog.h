// The dialog that edits an e-mail template, or sends an e-mail to test the mail server's settings.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "dialogs/please_wait_dialog.h"
#include "mail/mail_task.h"
#include "payload/payload_file.h"
#include "support/tracking_log.h"
#include "ui/dialog.h"

namespace orvc {

// What a test needs.
struct EmailTrial {
    MailServer server;
    TrackingLog& log;  // gets the lines of the mailer
    // Shows the result of the last send; empty while a new one runs.
    std::function<void(const std::string& result)> showResult;
};

// Purpose: edits a template (its button reads "Save"), or sends an e-mail (its button reads "Send").
//
// A thread of its own sends the e-mail; the please-wait window is shown, and nothing can be entered. Cancel or Esc
// cancels the send. The dialog closes if the e-mail was sent; otherwise it stays open for another try.
//
// Thread: user-interface thread. Lifetime: the trial's log and what showResult uses outlive the dialog.
class CSetupEmailDlg final : public ui::Dialog {
  public:
    CSetupEmailDlg(const ui::Resources& resources, EventEmail email);
    CSetupEmailDlg(const ui::Resources& resources, EventEmail email, EmailTrial trial);

    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const EventEmail& email() const { return email_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    bool onTimer(std::uintptr_t timer) override;
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool onPreview(MSG& message) override;
    unsigned helpTopic() const override;
    bool holdsEntries() const override { return true; }
    void onDestroy() override;

    EventEmail readEmail() const;
    void showEnabling();
    bool showNote();
    void accept();
    void startSending();
    void finishSending();
    void tell(MailTask::Outcome outcome, const MailFailure& failure);

    EventEmail email_;
    std::optional<EmailTrial> trial_;
    CPleaseWaitDlg pleaseWait_;
    std::unique_ptr<MailTask> task_;  // while an e-mail is being sent
};

}  // namespace orvc
