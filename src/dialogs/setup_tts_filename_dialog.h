// The dialog that takes the network path of a text file to be spoken.
#pragma once

#include <string>

#include "ui/dialog.h"

namespace orvc {

// The path is kept as it is typed or chosen: the server opens the file, not the console. Thread: user-interface thread.
class CSetupTtsFilenameDlg final : public ui::Dialog {
  public:
    CSetupTtsFilenameDlg(const ui::Resources& resources, std::string filename);

    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const std::string& filename() const { return filename_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    bool holdsEntries() const override { return true; }

    void browse();

    std::string filename_;
};

}  // namespace orvc
