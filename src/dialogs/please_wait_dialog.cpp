#include "dialogs/please_wait_dialog.h"

#include <commctrl.h>

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr LPARAM kMarqueeStep = 30;  // milliseconds

}  // namespace

CPleaseWaitDlg::CPleaseWaitDlg(const ui::Resources& resources, unsigned text)
    : Dialog(resources, IDD_PLEASE_WAIT), text_(text) {}

bool CPleaseWaitDlg::onInit() {
    showText(IDC_WAIT_TEXT, resources().text(text_));
    SendMessageA(control(IDC_WAIT_PROGRESS), PBM_SETMARQUEE, TRUE, kMarqueeStep);
    centerOn(GetParent(window()));
    return false;
}

}  // namespace orvc
