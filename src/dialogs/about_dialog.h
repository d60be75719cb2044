// The About box: versions of the console and of the pass-through library.
#pragma once

#include <string>
#include <vector>

#include "win32/dialog.h"

namespace orvc {

class CAboutDlg final : public win32::Dialog {
  public:
    // `lines` are shown as they stand, one a row.
    CAboutDlg(const win32::Resources& resources, std::vector<std::string> lines);

  private:
    bool onInit() override;

    std::vector<std::string> lines_;
    win32::UniqueIcon icon_;
};

}  // namespace orvc
