// The dialog that takes an e-mail template, or sends an e-mail to test the mail server's settings.
#pragma once

#include <memory>
#include <optional>

#include "dialogs/please_wait_dialog.h"
#include "mail/mail_task.h"
#include "payload/payload_file.h"
#include "support/tracking_log.h"
#include "win32/dialog.h"

namespace orvc {

// What a test needs: the server to send through, and the log for what the server says.
struct EmailTrial {
    MailServer server;
    TrackingLog& log;
};

// Purpose: edits a template, for which its button reads "Save", or sends an e-mail, for which it reads "Send".
//
// The e-mail is sent on a thread of its own, behind the please-wait window. Meanwhile nothing can be entered; Cancel
// or Esc gives up. A dialog that has sent its e-mail closes; one that could not stays, for another try.
// Thread: user-interface thread. Lifetime: the trial's log outlives the dialog.
class CSetupEmailDlg final : public win32::Dialog {
  public:
    CSetupEmailDlg(const win32::Resources& resources, EventEmail email);
    CSetupEmailDlg(const win32::Resources& resources, EventEmail email, EmailTrial trial);

    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const EventEmail& email() const { return email_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    bool onTimer(std::uintptr_t timer) override;
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool onPreview(MSG& message) override;
    unsigned helpTopic() const override;
    void onDestroy() override;

    EventEmail readEmail() const;
    void showEnabling();
    void accept();
    void startSending();
    void finishSending();
    void tell(MailTask::Outcome outcome);

    EventEmail email_;
    std::optional<EmailTrial> trial_;
    CPleaseWaitDlg pleaseWait_;
    std::unique_ptr<MailTask> task_;  // while an e-mail is being sent
};

}  // namespace orvc
