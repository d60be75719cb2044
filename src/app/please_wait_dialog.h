// The modeless please-wait window.
#pragma once

#include "win32/dialog.h"

namespace orvc {

class CPleaseWaitDlg final : public win32::Dialog {
  public:
    explicit CPleaseWaitDlg(const win32::Resources& resources);

  private:
    bool onInit() override;
    // Only its opener closes it.
    bool onCommand(unsigned, unsigned) override { return true; }
};

}  // namespace orvc
