// The About box: versions of the console and of the pass-through library.
#pragma once

#include <string>
#include <vector>

#include "ui/dialog.h"

namespace orvc {

class CAboutDlg final : public ui::Dialog {
  public:
    // `lines` are shown as they stand, one a row.
    CAboutDlg(const ui::Resources& resources, std::vector<std::string> lines);

  private:
    bool onInit() override;

    std::vector<std::string> lines_;
    win32::UniqueIcon icon_;
};

}  // namespace orvc
