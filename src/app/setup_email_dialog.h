// The dialog that takes an e-mail template.
#pragma once

#include "editors/event_file.h"
#include "win32/dialog.h"

namespace orvc {

// Thread: user-interface thread.
class CSetupEmailDlg final : public win32::Dialog {
  public:
    CSetupEmailDlg(const win32::Resources& resources, EventEmail email);

    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const EventEmail& email() const { return email_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;

    EventEmail readEmail() const;
    void showEnabling();

    EventEmail email_;
};

}  // namespace orvc
