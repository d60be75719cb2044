// The dialog that takes a text to be spoken.
#pragma once

#include <string>

#include "ui/dialog.h"

namespace orvc {

// Thread: user-interface thread. Line breaks are CR LF, as the edit has them.
class CSetupTtsDlg final : public ui::Dialog {
  public:
    CSetupTtsDlg(const ui::Resources& resources, std::string text);

    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const std::string& text() const { return text_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    bool holdsEntries() const override { return true; }
    void showState();

    std::string text_;
};

}  // namespace orvc
