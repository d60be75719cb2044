// The console's main window: the list of Events, the menu, and the place where messages and timers arrive.
#pragma once

#include <memory>
#include <string>

#include "console/commands.h"
#include "console/console_parts.h"
#include "console/event_commands.h"
#include "console/event_list_view.h"
#include "console/help.h"
#include "console/link_events.h"
#include "console/tray.h"
#include "console/workbench.h"
#include "dialogs/please_wait_dialog.h"
#include "session/session.h"
#include "ui/dialog.h"

namespace orvc {

// Purpose: owns the session and its parts, and routes messages to them. What they do is their own: LinkEvents delivers,
// Commands acts, EventTable and EventListView show, Tray hides.
// Thread: user-interface thread.
// Guarantees: the list is repainted once for many changes; input, painting and timers go on while events pour in.
class MainWindow final : public ui::Dialog, private SessionHost, private EventCheckerObserver {
  public:
    explicit MainWindow(const ConsoleParts& parts);
    ~MainWindow() override;

    // Tells of a missing scratch folder, at most once per start.
    void warnAboutScratchFolder(bool ready);

  private:
    // Dialog
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;
    bool onTimer(std::uintptr_t timer) override;
    void onClose() override;
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool onPreview(MSG& message) override;

    // SessionHost
    void startTimer(std::uintptr_t timer, std::uint32_t milliseconds) override;
    void stopTimer(std::uintptr_t timer) override;
    LogonOutcome runLogonDialog(const LogonEntry& entry, LogonLink& link) override;
    void saveSettings() override;
    void showTitle(const std::string& logonId) override;
    void refreshEventList() override;
    void openPleaseWait() override;
    void closePleaseWait() override;
    void endMainWindow() override;
    void removeKeyboardHook() override;
    void removeTrayIcon() override;
    void pause(std::uint32_t milliseconds) override;
    std::string findAdapterName(const std::string& serverAddress) override;
    std::string programVersion() override;

    // EventCheckerObserver
    void eventAffected(const EventRecord& record) override { table_.textsChanged(record); }
    void everyEventAffected() override { table_.allTextsChanged(); }

    std::string describe(const EventRecord& event) const;
    void setIcons();
    void installKeyboardHook();
    void exitConsole();
    void onSize(WPARAM kind);
    void limitSize(MINMAXINFO& limits) const;
    bool onContextMenu(HWND target, POINT place);
    void onMenuSelect(WPARAM wParam, LPARAM lParam);
    void paintIcon();

    ConsoleParts parts_;
    EventTable table_;
    EventListView list_;
    LinkEvents events_;
    Session session_;
    EventCommands eventCommands_;
    Workbench workbench_;
    Help help_;
    Tray tray_;
    LibraryInfo library_;
    Commands commands_;
    CPleaseWaitDlg pleaseWait_;
    win32::UniqueMenu menu_;
    win32::UniqueIcon bigIcon_;
    win32::UniqueIcon smallIcon_;
    win32::UniqueHook keyboardHook_;
    bool scratchWarningShown_ = false;
};

}  // namespace orvc
