// The session's window: writes what it is asked into the journal, and lets tests act inside its dialogs and waits.
#pragma once

#include <functional>
#include <set>

#include "journal.h"
#include "session/session_host.h"

namespace orvc {

class FakeSessionHost final : public SessionHost {
  public:
    explicit FakeSessionHost(Journal& journal) : journal_(journal) {}

    void startTimer(std::uintptr_t timer, std::uint32_t milliseconds) override {
        did("start timer " + std::to_string(timer) + " of " + std::to_string(milliseconds));
        runningTimers.insert(timer);
    }
    void stopTimer(std::uintptr_t timer) override {
        did("stop timer " + std::to_string(timer));
        runningTimers.erase(timer);
    }
    LogonOutcome runLogonDialog(const LogonEntry& entry, LogonLink& link) override {
        shownEntry = entry;
        logonLink = &link;
        did("logon dialog", onDialog);
        return outcome;
    }
    void saveSettings() override { did("save settings"); }
    void showTitle(const std::string& logonId) override { did("title '" + logonId + "'"); }
    void refreshEventList() override { did("refresh list"); }
    void openPleaseWait() override { did("open please-wait"); }
    void closePleaseWait() override { did("close please-wait"); }
    void endMainWindow() override { did("end main window"); }
    void removeKeyboardHook() override { did("remove hook"); }
    void removeTrayIcon() override { did("remove tray icon"); }
    void pause(std::uint32_t milliseconds) override { did("pause " + std::to_string(milliseconds), onWait); }
    std::string findAdapterName(const std::string& serverAddress) override { return "adapter for " + serverAddress; }
    std::string programVersion() override { return "1.2.3.4"; }

    std::set<std::uintptr_t> runningTimers;
    LogonOutcome outcome;
    LogonEntry shownEntry;
    LogonLink* logonLink = nullptr;  // of the last dialog
    std::function<void()> onDialog;
    std::function<void()> onWait;

  private:
    void did(const std::string& what, const std::function<void()>& inside = nullptr) {
        journal_.add(what);
        if (inside) inside();
    }

    Journal& journal_;
};

}  // namespace orvc
