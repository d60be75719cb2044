#include "dialogs/logon_dialog.h"

#include <algorithm>

#include "resources/resource.h"
#include "ui/message_loop.h"
#include "win32/network.h"

namespace orvc {
namespace {

constexpr UINT_PTR kCountdownTimer = 1;
constexpr UINT_PTR kUnusedTimer = 3;
constexpr UINT kCountdownPeriod = 1000;
constexpr UINT kBeginMessage = WM_APP;
constexpr DWORD kKeyPause = 500;  // milliseconds

// Window sizes in pixels at 96 DPI.
constexpr int kWidth = 290;
constexpr int kHeight = 160;
constexpr int kHeightWithOptions = 200;
constexpr int kMargin = 8;

constexpr unsigned kOptionControls[] = {IDC_LOGON_ADDRESS_LABEL, IDC_LOGON_ADDRESS, IDC_LOGON_PORT_LABEL,
                                        IDC_LOGON_PORT};
constexpr unsigned kDisabledWhileBusy[] = {IDC_LOGON_ID,      IDC_LOGON_PASSWORD, IDC_LOGON_SAVE, IDOK,
                                           IDC_LOGON_OPTIONS, IDC_LOGON_ADDRESS,  IDC_LOGON_PORT};

}  // namespace

CKSLogonDlg::CKSLogonDlg(const ui::Resources& resources, LogonLink& link, TrackingLog& log, const LogonEntry& entry)
    : Dialog(resources, IDD_LOGON),
      entry_(entry),
      sequence_(*this, link, this->resources(), log, win32::addressFromText) {}

LogonOutcome CKSLogonDlg::run(HWND owner) {
    outcome_ = {};
    // The main window has no owner.
    ignoresKeys_ = owner != nullptr && GetWindow(owner, GW_OWNER) != nullptr;
    lastKey_ = GetTickCount();
    runModal(owner);
    return outcome_;
}

bool CKSLogonDlg::onInit() {
    showText(IDC_LOGON_ID, entry_.logonId);
    showText(IDC_LOGON_PASSWORD, entry_.password);
    showText(IDC_LOGON_ADDRESS, entry_.address);
    showText(IDC_LOGON_PORT, entry_.port);
    CheckDlgButton(window(), IDC_LOGON_SAVE, entry_.saveCredentials ? BST_CHECKED : BST_UNCHECKED);
    showOptions(false);
    enableControls(true);
    centerOn(GetParent(window()));
    // An automatic logon shows its titles and its result in the dialog: it starts once the dialog is there.
    PostMessageA(window(), WM_COMMAND, kBeginMessage, 0);
    return true;
}

bool CKSLogonDlg::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case kBeginMessage:
            sequence_.begin(entry_);
            return true;
        case IDOK:
            if (IsWindowEnabled(control(IDOK))) sequence_.attempt();
            return true;
        case IDCANCEL:
            sequence_.cancel();
            return true;
        case IDC_LOGON_OPTIONS:
            if (notification == BN_CLICKED) showOptions(!optionsShown_);
            return true;
        default:
            return false;
    }
}

bool CKSLogonDlg::onTimer(std::uintptr_t timer) {
    if (timer == kCountdownTimer) sequence_.onTick();
    return true;
}

// Somebody who types into a dialog does not see at once that this one has come in front of it.
bool CKSLogonDlg::onPreview(MSG& message) {
    if (!ignoresKeys_ || message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
    // The times are those of the keys, however late they are handled.
    const bool isPress = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    const auto pause = static_cast<LONG>(message.time - lastKey_);
    if (isPress && pause >= static_cast<LONG>(kKeyPause)) {
        ignoresKeys_ = false;
        return false;
    }
    if (isPress && pause > 0) lastKey_ = message.time;
    return true;
}

bool CKSLogonDlg::mayCancel() {
    return !holdsEntriesAnywhere() ||
           ui::askYesNo(window(), resources().text(IDS_LOSE_ENTRIES), resources().text(IDS_LOSE_ENTRIES_CAPTION));
}

void CKSLogonDlg::showOptions(bool shown) {
    optionsShown_ = shown;
    for (const unsigned id : kOptionControls)
        show(id, shown);
    showText(IDC_LOGON_OPTIONS, resources().text(shown ? IDS_OPTIONS_HIDE : IDS_OPTIONS_SHOW));
    // At least as large as the controls need: fonts and languages differ.
    RECT last{};
    GetWindowRect(control(shown ? IDC_LOGON_PORT : IDC_LOGON_OPTIONS), &last);
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&last), 2);
    RECT needed{0, 0, last.right + scale(kMargin), last.bottom + scale(kMargin)};
    AdjustWindowRectEx(&needed, static_cast<DWORD>(GetWindowLongPtrA(window(), GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(window(), GWL_EXSTYLE)));
    const int width = std::max<int>(scale(kWidth), needed.right - needed.left);
    const int height = std::max<int>(scale(shown ? kHeightWithOptions : kHeight), needed.bottom - needed.top);
    SetWindowPos(window(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LogonEntry CKSLogonDlg::readEntry() {
    if (window() == nullptr) return entry_;  // it went while messages were handled
    entry_.logonId = readText(IDC_LOGON_ID);
    entry_.password = readText(IDC_LOGON_PASSWORD);
    entry_.address = readText(IDC_LOGON_ADDRESS);
    entry_.port = readText(IDC_LOGON_PORT);
    entry_.saveCredentials = IsDlgButtonChecked(window(), IDC_LOGON_SAVE) == BST_CHECKED;
    return entry_;
}

void CKSLogonDlg::setTitle(const std::string& title) {
    SetWindowTextA(window(), title.c_str());
}

void CKSLogonDlg::enableControls(bool enabled) {
    // A disabled control must not keep the focus, or the keyboard would reach nothing.
    if (!enabled) SetFocus(control(IDCANCEL));
    for (const unsigned id : kDisabledWhileBusy)
        enable(id, enabled);
    if (enabled) SendMessageA(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_LOGON_ID)), TRUE);
}

void CKSLogonDlg::startCountdownTimer() {
    SetTimer(window(), kCountdownTimer, kCountdownPeriod, nullptr);
}

void CKSLogonDlg::stopTimers() {
    KillTimer(window(), kCountdownTimer);
    KillTimer(window(), kUnusedTimer);
}

void CKSLogonDlg::handleWaitingMessages() {
    ui::handleWaitingMessages();
}

void CKSLogonDlg::showError(const std::string& text) {
    ui::showMessage(window(), text, resources().text(IDS_ERROR_CAPTION));
}

void CKSLogonDlg::selectPassword() {
    SendMessageA(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_LOGON_PASSWORD)), TRUE);
    SendMessageA(control(IDC_LOGON_PASSWORD), EM_SETSEL, 0, -1);
}

void CKSLogonDlg::end(bool success) {
    outcome_.success = success;
    outcome_.cancelled = !success;
    outcome_.entry = readEntry();
    endDialog(success ? IDOK : IDCANCEL);
}

}  // namespace orvc
