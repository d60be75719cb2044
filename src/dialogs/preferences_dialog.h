// The preferences: a strip of tabs over two pages.
#pragma once

#include <functional>
#include <string>

#include "editors/preferences/preferences_form.h"
#include "support/tracking_log.h"
#include "win32/dialog.h"

namespace orvc {

// A page of the preferences: a child of the dialog that carries the tabs, which places, shows and reads it.
class PreferencesPage : public win32::Dialog {
  protected:
    PreferencesPage(const win32::Resources& resources, unsigned templateId) : Dialog(resources, templateId) {}
    // Ending is the business of the dialog around it.
    bool onCommand(unsigned, unsigned) override { return false; }
};

// The local choices. Thread: user-interface thread.
class CPreferencesGeneralDlg final : public PreferencesPage {
  public:
    CPreferencesGeneralDlg(const win32::Resources& resources, bool minimizesToTray);

    void readPage();
    bool minimizesToTray() const { return minimizesToTray_; }

  private:
    bool onInit() override;

    bool minimizesToTray_;
};

// The server's outgoing mail. Thread: user-interface thread.
class CPreferencesEmailDlg final : public PreferencesPage {
  public:
    CPreferencesEmailDlg(const win32::Resources& resources, TrackingLog& log, const MailSettings& settings);

    // Reads the controls into the form and tells of a port that is none.
    void readPage();
    const EmailForm& form() const { return form_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;

    void testSettings();

    TrackingLog& log_;
    EmailForm form_;
};

// Purpose: edits the preferences. Nothing is stored before OK, and then by the caller.
// Thread: user-interface thread. Lifetime: the log outlives the dialog; the settings are copied.
class CPreferencesDlg final : public win32::Dialog {
  public:
    CPreferencesDlg(const win32::Resources& resources, TrackingLog& log, bool minimizesToTray,
                    const MailSettings& settings);

    // True for OK; the pages then hold what was entered.
    bool run(HWND owner) { return runModal(owner) == IDOK; }
    bool minimizesToTray() const { return general_.minimizesToTray(); }
    const EmailForm& email() const { return email_.form(); }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;

    void insertTabs();
    bool placePage(win32::Dialog& page);
    void showPage(int tab);

    CPreferencesGeneralDlg general_;
    CPreferencesEmailDlg email_;
};

}  // namespace orvc
