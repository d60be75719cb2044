#include "dialogs/setup_email_dialog.h"

#include <array>
#include <system_error>

#include "editors/event/save_warnings.h"
#include "editors/preferences/trial_email.h"
#include "resources/resource.h"
#include "support/help_chapters.h"
#include "ui/controls.h"
#include "win32/code_page.h"

namespace orvc {
namespace {

constexpr std::array<unsigned, 4> kEdits{IDC_EMAIL_FROM, IDC_EMAIL_TO, IDC_EMAIL_SUBJECT, IDC_EMAIL_MESSAGE};
constexpr UINT kSendingEnded = WM_APP;
constexpr std::uintptr_t kFinishTimer = 1;
constexpr UINT kFinishPause = 100;  // milliseconds

}  // namespace

CSetupEmailDlg::CSetupEmailDlg(const ui::Resources& resources, EventEmail email)
    : Dialog(resources, IDD_EMAIL), email_(std::move(email)), pleaseWait_(resources, IDS_WAIT_SENDING) {}

CSetupEmailDlg::CSetupEmailDlg(const ui::Resources& resources, EventEmail email, EmailTrial trial)
    : CSetupEmailDlg(resources, std::move(email)) {
    trial_.emplace(std::move(trial));
}

bool CSetupEmailDlg::onInit() {
    for (const unsigned id : kEdits)
        ui::liftTextLimit(control(id));
    showText(IDC_EMAIL_FROM, email_.from);
    showText(IDC_EMAIL_TO, email_.to);
    showText(IDC_EMAIL_SUBJECT, email_.subject);
    showText(IDC_EMAIL_MESSAGE, email_.body);
    if (trial_) showText(IDOK, resources().text(IDS_EMAIL_TEST_SEND));
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
            if (ui::isEditChange(notification)) showEnabling();
            return true;
        case IDOK:
            if (IsWindowEnabled(control(IDOK))) accept();
            return true;
        default:
            return Dialog::onCommand(id, notification);
    }
}

void CSetupEmailDlg::accept() {
    email_ = readEmail();
    if (trial_)
        startSending();
    else
        endDialog(IDOK);
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
    bool complete = task_ == nullptr;
    for (const unsigned id : kEdits) {
        complete = complete && GetWindowTextLengthA(control(id)) > 0;
        enable(id, task_ == nullptr);
    }
    enable(IDOK, complete && !showNote());
}

// What a payload file cannot hold; an e-mail that is only sent has none. Returns whether it must not be saved.
bool CSetupEmailDlg::showNote() {
    if (trial_) return false;
    const EventEmail email = readEmail();
    const std::string note = textOf(warningsForEmail(email), resources());
    if (note != readText(IDC_EMAIL_NOTE)) showText(IDC_EMAIL_NOTE, note);
    return spoilsPayloadFile(email);
}

// ---------------------------------------------------------------------------------------------------------------------
// Sending

void CSetupEmailDlg::startSending() {
    trial_->showResult({});
    try {
        task_ = std::make_unique<MailTask>(
            trial_->server, makeTrialEmail(email_, win32::toUtf8),
            [&log = trial_->log](const std::string& line) { log.log("%s", line.c_str()); },
            [target = window()] { PostMessageA(target, kSendingEnded, 0, 0); });
    } catch (const std::system_error&) {  // the system has no thread
        tell(MailTask::Outcome::kFailed, {});
        return;
    }
    // The control that has the focus is about to be disabled.
    SetFocus(control(IDCANCEL));
    showEnabling();
    pleaseWait_.createModeless(window());
}

// The please-wait window has the focus and ignores Esc: handle it here.
bool CSetupEmailDlg::onPreview(MSG& message) {
    if (task_ == nullptr || message.message != WM_KEYDOWN || message.wParam != VK_ESCAPE) return false;
    endDialog(IDCANCEL);
    return true;
}

unsigned CSetupEmailDlg::helpTopic() const {
    return trial_ ? kEmailTestTopic : Dialog::helpTopic();
}

std::optional<LRESULT> CSetupEmailDlg::onMessage(UINT message, WPARAM, LPARAM) {
    // Ignore a message that no ended send has posted.
    if (message != kSendingEnded || task_ == nullptr || task_->outcome() == MailTask::Outcome::kRunning)
        return std::nullopt;
    finishSending();
    return 0;
}

bool CSetupEmailDlg::onTimer(std::uintptr_t timer) {
    if (timer != kFinishTimer) return false;
    KillTimer(window(), kFinishTimer);
    if (task_ != nullptr) finishSending();
    return true;
}

void CSetupEmailDlg::finishSending() {
    // After a server stop the logon dialog is open: closing this dialog would cancel it.
    if (topmostModal() != window()) {
        SetTimer(window(), kFinishTimer, kFinishPause, nullptr);
        return;
    }
    const MailTask::Outcome outcome = task_->outcome();
    const MailFailure failure = task_->failure();
    task_.reset();
    pleaseWait_.destroy();
    showEnabling();
    SetFocus(control(IDOK));
    tell(outcome, failure);
    if (outcome != MailTask::Outcome::kFailed) endDialog(IDOK);
}

void CSetupEmailDlg::tell(MailTask::Outcome outcome, const MailFailure& failure) {
    trial_->showResult(resultText(outcome, failure, resources()));
    for (const TrialMessage& message : messagesFor(outcome))
        ui::showMessage(window(), resources().text(message.text), resources().text(message.caption));
}

void CSetupEmailDlg::onDestroy() {
    // Stop the mail thread now: it must not post to a destroyed window.
    task_.reset();
}

}  // namespace orvc
