// The preferences: a tab strip with two pages.
#pragma once

#include <functional>
#include <string>

#include "dialogs/link_note.h"
#include "editors/preferences/preferences_form.h"
#include "resources/resource.h"
#include "support/tracking_log.h"
#include "ui/dialog.h"
#include "ui/foot_line.h"

namespace orvc {

// A page of the preferences: a child of the dialog with the tabs, which places, shows and reads it.
class PreferencesPage : public ui::Dialog {
  protected:
    PreferencesPage(const ui::Resources& resources, unsigned templateId) : Dialog(resources, templateId) {}
    // A page has no OK and no Cancel of its own.
    bool onCommand(unsigned, unsigned) override { return false; }
};

// The local choices. Thread: user-interface thread.
class CPreferencesGeneralDlg final : public PreferencesPage {
  public:
    CPreferencesGeneralDlg(const ui::Resources& resources, bool minimizesToTray);

    void readPage();
    bool minimizesToTray() const { return minimizesToTray_; }

  private:
    bool onInit() override;

    bool minimizesToTray_;
};

// The server's outgoing mail. Thread: user-interface thread.
class CPreferencesEmailDlg final : public PreferencesPage {
  public:
    CPreferencesEmailDlg(const ui::Resources& resources, TrackingLog& log, const MailSettings& settings);

    // Reads the controls into the form. Shows a message if the port is not a number or is out of range.
    void readPage();
    const EmailForm& form() const { return form_; }
    // The box with the result of the last test.
    HWND resultBox() const { return control(IDC_PREFERENCES_REASON); }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;

    void testSettings();

    TrackingLog& log_;
    EmailForm form_;
};

// Purpose: edits the preferences. After OK, the caller stores them.
// Thread: user-interface thread. Lifetime: the log outlives the dialog; the settings are copied.
class CPreferencesDlg final : public ui::Dialog {
  public:
    CPreferencesDlg(const ui::Resources& resources, TrackingLog& log, bool minimizesToTray,
                    const MailSettings& settings, LinkNote linkNote);

    // True for OK. The pages then hold what the operator entered.
    bool run(HWND owner) { return runModal(owner) == IDOK; }
    bool minimizesToTray() const { return general_.minimizesToTray(); }
    const EmailForm& email() const { return email_.form(); }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;
    bool onTimer(std::uintptr_t timer) override;
    bool onPreview(MSG& message) override;
    bool holdsEntries() const override { return true; }

    void insertTabs();
    bool placePage(ui::Dialog& page);
    void showPage(int tab);

    CPreferencesGeneralDlg general_;
    CPreferencesEmailDlg email_;
    LinkNote linkNote_;
    ui::FootLine foot_;
};

}  // namespace orvc
