// The part of the tour that tries the e-mail settings, and what it is made of: the preferences worked as an operator
// does.
#pragma once

#include <string>

#include "tour/steps.h"

namespace orvc::driver {

// What the Email page takes; texts are in the code page of the machine.
struct MailSettings {
    std::string userName;
    std::string password;
    std::string host;
    std::string from;
    int port = 25;
};

// What the e-mail that tries them takes.
struct MailTexts {
    std::string to;
    std::string subject;
    std::string message;
};

// Purpose: works the Preferences of a console that somebody is logged on to. Functions throw StepFailed when a window
// does not come or go.
class PreferencesDriver {
  public:
    // Opens the dialog; it shows the General page.
    explicit PreferencesDriver(ConsoleDriver& console);

    HWND window() const { return dialog_; }
    HWND emailPage() const { return email_; }
    // The page with that control.
    HWND page(unsigned control) const;
    void showEmailPage();
    void enter(const MailSettings& settings);
    // Opens the dialog of the test, enters the texts, and leaves it open.
    HWND openTest(const MailTexts& texts);
    // Presses Send and returns the message box that tells the outcome.
    HWND send(HWND test);
    void close(unsigned button);

  private:
    ConsoleDriver& console_;
    HWND dialog_ = nullptr;
    HWND email_ = nullptr;
};

// Enters settings in the Preferences, tries them with an e-mail to a mail server of its own, which listens on loopback
// meanwhile, shows what arrived and compares it with what was typed, saves with OK, and compares the settings with what
// the demo server stored in its installation file. Throws StepFailed.
void tryEmail(ConsoleDriver& console, const std::string& installation, const Narrator& narrator);

}  // namespace orvc::driver
