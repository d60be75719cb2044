#include "dialogs/setup_tts_filename_dialog.h"

#include "resources/resource.h"
#include "ui/controls.h"
#include "ui/file_dialog.h"

namespace orvc {

CSetupTtsFilenameDlg::CSetupTtsFilenameDlg(const ui::Resources& resources, std::string filename)
    : Dialog(resources, IDD_TTS_FILENAME), filename_(std::move(filename)) {}

bool CSetupTtsFilenameDlg::onInit() {
    showText(IDC_TTS_FILENAME, filename_);
    enable(IDOK, !filename_.empty());
    centerOn(GetParent(window()));
    return true;
}

bool CSetupTtsFilenameDlg::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case IDC_TTS_FILENAME:
            if (ui::isEditChange(notification)) enable(IDOK, !readText(IDC_TTS_FILENAME).empty());
            return true;
        case IDC_TTS_BROWSE:
            browse();
            return true;
        case IDOK:
            if (!IsWindowEnabled(control(IDOK))) return true;
            filename_ = readText(IDC_TTS_FILENAME);
            endDialog(IDOK);
            return true;
        default:
            return Dialog::onCommand(id, notification);
    }
}

void CSetupTtsFilenameDlg::browse() {
    const auto chosen =
        ui::chooseFileToOpen(window(), readText(IDC_TTS_FILENAME), resources().text(IDS_TTS_FILE_FILTER),
                             resources().text(IDS_TTS_FILE_EXTENSION));
    if (chosen) showText(IDC_TTS_FILENAME, *chosen);
}

}  // namespace orvc
