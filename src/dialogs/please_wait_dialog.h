// The modeless please-wait window.
#pragma once

#include "win32/dialog.h"

namespace orvc {

class CPleaseWaitDlg final : public win32::Dialog {
  public:
    // `text` is the id of its line in the string table.
    CPleaseWaitDlg(const win32::Resources& resources, unsigned text);

  private:
    bool onInit() override;
    // Only its opener closes it.
    bool onCommand(unsigned, unsigned) override { return true; }

    unsigned text_;
};

}  // namespace orvc
