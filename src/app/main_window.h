// The console's main window: the list of Events, the menu, and the place where messages and timers arrive.
#pragma once

#include <memory>
#include <string>

#include "app/event_list_view.h"
#include "app/help.h"
#include "app/local_settings.h"
#include "app/please_wait_dialog.h"
#include "app/refused_timers.h"
#include "app/session.h"
#include "win32/dialog.h"
#include "win32/tray_icon.h"
#include "win32/window_poster.h"

namespace orvc {

// What the application lends to its main window; all of it outlives the window.
struct ConsoleParts {
    const win32::Resources& resources;
    TrackingLog& log;
    const Clock& clock;
    LocalSettings& settings;
    KSServerLink& link;
    FileSystem& files;
    std::string companyKey;
};

// Purpose: owns the session and shows it. Thread: user-interface thread.
// Guarantees: the list is repainted once for many changes; input, painting and timers go on while events pour in.
class MainWindow final : public win32::Dialog, private SessionHost {
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
    LogonOutcome runLogonDialog(const LogonEntry& entry) override;
    void showTitle(const std::string& logonId) override;
    void refreshEventList() override;
    void openPleaseWait() override;
    void closePleaseWait() override;
    void endMainWindow() override;
    void removeKeyboardHook() override;
    void removeTrayIcon() override;
    void pause(std::uint32_t milliseconds) override;
    void handleMessagesAndSleep(std::uint32_t milliseconds) override;
    std::string findAdapterName(const std::string& serverAddress) override;
    std::string programVersion() override;

    // Start-up
    void extendSystemMenu();
    void setIcons();
    void openLink();
    void installKeyboardHook();
    void restoreSize();
    void rememberSize();

    // Commands
    void exitConsole();
    void recordEvents();
    void clearFile();
    void openSupportFolder();
    void showAbout();
    void createEvent();
    void modifySelectedEvent();
    void runEditor(const EventRecord* event);
    void editPreferences();
    void editSchedules();
    void deleteSelectedEvent();
    void configureSchedules();
    void runFromList(unsigned command);

    // Events from the library
    void deliverEvents();
    bool deliverWhenIdle();
    bool retryRefusedTimers();
    void showChanges(bool isLast);

    // Tray icon and painting
    void applyTraySetting();
    void onTrayMessage(LPARAM mouseMessage);
    void onSize(WPARAM kind);
    void paintIcon();

    ConsoleParts parts_;
    win32::MainWindowPoster poster_;
    Session session_;
    EventListView list_;
    Help help_;
    CPleaseWaitDlg pleaseWait_;
    win32::UniqueMenu menu_;
    win32::UniqueMenu trayMenu_;
    win32::UniqueIcon bigIcon_;
    win32::UniqueIcon smallIcon_;
    win32::UniqueHook keyboardHook_;
    win32::TrayIcon trayIcon_;
    HACCEL accelerators_ = nullptr;
    LibraryVersion libraryVersion_;
    std::string libraryVersionText_;
    bool scratchWarningShown_ = false;
    RefusedTimers refusedTimers_;
    std::uint32_t lastRefresh_ = 0;   // tick count
    std::uint32_t refreshPause_ = 0;  // milliseconds until the next one while events pour in
};

}  // namespace orvc
