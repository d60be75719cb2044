#include "dialogs/setup_tts_dialog.h"

#include "resources/resource.h"
#include "ui/controls.h"

namespace orvc {

CSetupTtsDlg::CSetupTtsDlg(const ui::Resources& resources, std::string text)
    : Dialog(resources, IDD_TTS), text_(std::move(text)) {}

bool CSetupTtsDlg::onInit() {
    ui::liftTextLimit(control(IDC_TTS_TEXT));
    showText(IDC_TTS_TEXT, text_);
    enable(IDOK, !text_.empty());
    centerOn(GetParent(window()));
    SetFocus(control(IDC_TTS_TEXT));
    return false;
}

bool CSetupTtsDlg::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case IDC_TTS_TEXT:
            if (ui::isEditChange(notification)) enable(IDOK, GetWindowTextLengthA(control(IDC_TTS_TEXT)) > 0);
            return true;
        case IDOK:
            if (!IsWindowEnabled(control(IDOK))) return true;
            text_ = readText(IDC_TTS_TEXT);
            endDialog(IDOK);
            return true;
        default:
            return Dialog::onCommand(id, notification);
    }
}

}  // namespace orvc
