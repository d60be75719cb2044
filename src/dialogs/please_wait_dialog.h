// The modeless please-wait window.
#pragma once

#include "ui/dialog.h"

namespace orvc {

class CPleaseWaitDlg final : public ui::Dialog {
  public:
    // `text` is the id of its line in the string table.
    CPleaseWaitDlg(const ui::Resources& resources, unsigned text);

  private:
    bool onInit() override;
    // Only its opener closes it.
    bool onCommand(unsigned, unsigned) override { return true; }

    unsigned text_;
};

}  // namespace orvc
