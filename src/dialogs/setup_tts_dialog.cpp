#include "dialogs/setup_tts_dialog.h"

#include "editors/event/save_warnings.h"
#include "resources/resource.h"
#include "ui/controls.h"

namespace orvc {

CSetupTtsDlg::CSetupTtsDlg(const ui::Resources& resources, std::string text)
    : Dialog(resources, IDD_TTS), text_(std::move(text)) {}

bool CSetupTtsDlg::onInit() {
    ui::liftTextLimit(control(IDC_TTS_TEXT));
    showText(IDC_TTS_TEXT, text_);
    showState();
    centerOn(GetParent(window()));
    SetFocus(control(IDC_TTS_TEXT));
    return false;
}

void CSetupTtsDlg::showState() {
    const std::string text = readText(IDC_TTS_TEXT);
    const std::string note = textOf(warningsForText(text), resources());
    enable(IDOK, !text.empty());
    if (note != readText(IDC_TTS_NOTE)) showText(IDC_TTS_NOTE, note);
}

bool CSetupTtsDlg::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case IDC_TTS_TEXT:
            if (ui::isEditChange(notification)) showState();
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
