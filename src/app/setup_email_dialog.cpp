#include "app/setup_email_dialog.h"

#include "resources/resource.h"
#include "win32/controls.h"

namespace orvc {

CSetupEmailDlg::CSetupEmailDlg(const win32::Resources& resources, EventEmail email)
    : Dialog(resources, IDD_EMAIL), email_(std::move(email)) {}

bool CSetupEmailDlg::onInit() {
    for (const unsigned id : {IDC_EMAIL_FROM, IDC_EMAIL_TO, IDC_EMAIL_SUBJECT, IDC_EMAIL_MESSAGE})
        win32::liftTextLimit(control(id));
    showText(IDC_EMAIL_FROM, email_.from);
    showText(IDC_EMAIL_TO, email_.to);
    showText(IDC_EMAIL_SUBJECT, email_.subject);
    showText(IDC_EMAIL_MESSAGE, email_.body);
    showEnabling();
    centerOn(GetParent(window()));
    return true;
}

bool CSetupEmailDlg::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case IDC_EMAIL_FROM:
        case IDC_EMAIL_TO:
        case IDC_EMAIL_SUBJECT:
        case IDC_EMAIL_MESSAGE:
            if (win32::isEditChange(notification)) showEnabling();
            return true;
        case IDOK:
            if (!IsWindowEnabled(control(IDOK))) return true;
            email_ = readEmail();
            endDialog(IDOK);
            return true;
        default:
            return Dialog::onCommand(id, notification);
    }
}

EventEmail CSetupEmailDlg::readEmail() const {
    EventEmail email = email_;
    email.from = readText(IDC_EMAIL_FROM);
    email.to = readText(IDC_EMAIL_TO);
    email.subject = readText(IDC_EMAIL_SUBJECT);
    email.body = readText(IDC_EMAIL_MESSAGE);
    return email;
}

void CSetupEmailDlg::showEnabling() {
    bool complete = true;
    for (const unsigned id : {IDC_EMAIL_FROM, IDC_EMAIL_TO, IDC_EMAIL_SUBJECT, IDC_EMAIL_MESSAGE})
        complete = complete && GetWindowTextLengthA(control(id)) > 0;
    enable(IDOK, complete);
}

}  // namespace orvc
