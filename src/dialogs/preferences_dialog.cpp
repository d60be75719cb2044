#include "dialogs/preferences_dialog.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <utility>

#include "dialogs/setup_email_dialog.h"
#include "editors/preferences/trial_email.h"
#include "resources/resource.h"
#include "ui/controls.h"
#include "win32/code_page.h"

namespace orvc {
namespace {

constexpr int kEmailTab = 1;
constexpr UINT_PTR kFootTimer = 1;

}  // namespace

// ---------------------------------------------------------------------------------------------------------------------
// General

CPreferencesGeneralDlg::CPreferencesGeneralDlg(const ui::Resources& resources, bool minimizesToTray)
    : PreferencesPage(resources, IDD_PREFERENCES_GENERAL), minimizesToTray_(minimizesToTray) {}

bool CPreferencesGeneralDlg::onInit() {
    CheckDlgButton(window(), IDC_PREFERENCES_TRAY, minimizesToTray_ ? BST_CHECKED : BST_UNCHECKED);
    return false;
}

void CPreferencesGeneralDlg::readPage() {
    minimizesToTray_ = IsDlgButtonChecked(window(), IDC_PREFERENCES_TRAY) == BST_CHECKED;
}

// ---------------------------------------------------------------------------------------------------------------------
// Email

CPreferencesEmailDlg::CPreferencesEmailDlg(const ui::Resources& resources, TrackingLog& log,
                                           const MailSettings& settings)
    : PreferencesPage(resources, IDD_PREFERENCES_EMAIL), log_(log), form_(settings) {}

bool CPreferencesEmailDlg::onInit() {
    for (const unsigned id :
         {IDC_PREFERENCES_USER, IDC_PREFERENCES_PASSWORD, IDC_PREFERENCES_HOST, IDC_PREFERENCES_FROM})
        ui::liftTextLimit(control(id));
    showText(IDC_PREFERENCES_USER, form_.userName);
    showText(IDC_PREFERENCES_PASSWORD, form_.password);
    showText(IDC_PREFERENCES_HOST, form_.smtpHost);
    showText(IDC_PREFERENCES_FROM, form_.defaultFrom);
    showText(IDC_PREFERENCES_PORT, form_.portText);
    return false;
}

bool CPreferencesEmailDlg::onCommand(unsigned id, unsigned notification) {
    if (id != IDC_PREFERENCES_TEST || notification != BN_CLICKED) return false;
    testSettings();
    return true;
}

void CPreferencesEmailDlg::readPage() {
    form_.userName = readText(IDC_PREFERENCES_USER);
    form_.password = readText(IDC_PREFERENCES_PASSWORD);
    form_.smtpHost = readText(IDC_PREFERENCES_HOST);
    form_.defaultFrom = readText(IDC_PREFERENCES_FROM);
    form_.portText = readText(IDC_PREFERENCES_PORT);
    if (const auto message = form_.takePort(resources()))
        ui::showMessage(GetAncestor(window(), GA_ROOT), *message, resources().text(IDS_ERROR_CAPTION));
}

void CPreferencesEmailDlg::testSettings() {
    readPage();
    EventEmail email;
    email.from = form_.defaultFrom;
    const auto showResult = [this](const std::string& result) { showText(IDC_PREFERENCES_REASON, result); };
    CSetupEmailDlg(resources(), std::move(email), EmailTrial{mailServerOf(form_, win32::toUtf8), log_, showResult})
        .run(GetAncestor(window(), GA_ROOT));
}

// ---------------------------------------------------------------------------------------------------------------------
// Both

CPreferencesDlg::CPreferencesDlg(const ui::Resources& resources, TrackingLog& log, bool minimizesToTray,
                                 const MailSettings& settings, LinkNote linkNote)
    : Dialog(resources, IDD_PREFERENCES),
      general_(resources, minimizesToTray),
      email_(resources, log, settings),
      linkNote_(std::move(linkNote)) {}

bool CPreferencesDlg::onInit() {
    foot_.attach(control(IDC_PREFERENCES_FOOT));
    insertTabs();
    if (!placePage(general_) || !placePage(email_)) {
        endDialog(IDCANCEL);
        return true;
    }
    showPage(0);
    centerOn(GetParent(window()));
    SetFocus(control(IDC_PREFERENCES_TABS));
    SetTimer(window(), kFootTimer, kLinkNotePeriod, nullptr);
    return false;
}

void CPreferencesDlg::insertTabs() {
    for (const unsigned id : {IDS_TAB_GENERAL, IDS_TAB_EMAIL}) {
        std::string text = resources().text(id);
        TCITEMA item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        SendMessageA(control(IDC_PREFERENCES_TABS), TCM_INSERTITEMA, id - IDS_TAB_GENERAL,
                     reinterpret_cast<LPARAM>(&item));
    }
}

// Creates a page in the area of the tab control. For the Tab key it comes after the tabs and before the buttons.
bool CPreferencesDlg::placePage(ui::Dialog& page) {
    if (!page.createModeless(window())) return false;
    const HWND tabs = control(IDC_PREFERENCES_TABS);
    EnableThemeDialogTexture(page.window(), ETDT_ENABLETAB);
    RECT frame{};
    GetWindowRect(tabs, &frame);
    SendMessageA(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&frame));
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&frame), 2);
    SetWindowPos(page.window(), tabs, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOACTIVATE);
    return true;
}

void CPreferencesDlg::showPage(int tab) {
    ui::Dialog& shown = tab == kEmailTab ? static_cast<ui::Dialog&>(email_) : general_;
    ui::Dialog& hidden = tab == kEmailTab ? static_cast<ui::Dialog&>(general_) : email_;
    ShowWindow(shown.window(), SW_SHOW);
    // The keyboard stays in the page that is seen.
    if (IsChild(hidden.window(), GetFocus()))
        SendMessageA(window(), WM_NEXTDLGCTL,
                     reinterpret_cast<WPARAM>(GetNextDlgTabItem(shown.window(), nullptr, FALSE)), TRUE);
    ShowWindow(hidden.window(), SW_HIDE);
}

bool CPreferencesDlg::onTimer(std::uintptr_t timer) {
    if (timer == kFootTimer) foot_.show(linkNote_());
    return timer == kFootTimer;
}

bool CPreferencesDlg::onCommand(unsigned id, unsigned notification) {
    if (id == IDOK) {
        general_.readPage();
        email_.readPage();
    }
    return Dialog::onCommand(id, notification);
}

std::optional<LRESULT> CPreferencesDlg::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_PREFERENCES_TABS || header.code != TCN_SELCHANGE) return std::nullopt;
    showPage(static_cast<int>(SendMessageA(header.hwndFrom, TCM_GETCURSEL, 0, 0)));
    return 0;
}

// A box of several lines keeps Tab, Enter and Esc for itself. The result box is read-only and does not need them: let
// the dialog handle them.
bool CPreferencesDlg::onPreview(MSG& message) {
    if (const auto tab = ui::tabChosenBy(message, control(IDC_PREFERENCES_TABS))) {
        SendMessageA(control(IDC_PREFERENCES_TABS), TCM_SETCURSEL, static_cast<WPARAM>(*tab), 0);
        showPage(*tab);
        return true;
    }
    const bool isDialogKey = message.wParam == VK_TAB || message.wParam == VK_RETURN || message.wParam == VK_ESCAPE;
    if (message.message == WM_KEYDOWN && isDialogKey && message.hwnd == email_.resultBox()) message.hwnd = window();
    return false;
}

}  // namespace orvc
