#include "app/main_window.h"

#include <shellapi.h>

#include <algorithm>

#include "app/about_dialog.h"
#include "app/configure_schedules_dialog.h"
#include "app/logon_dialog.h"
#include "app/preferences_dialog.h"
#include "app/setup_event_dialog.h"
#include "resources/resource.h"
#include "support/text.h"
#include "win32/collation.h"
#include "win32/message_loop.h"
#include "win32/network.h"
#include "win32/pass_thru_loader.h"
#include "win32/system_files.h"

namespace orvc {
namespace {

// While events pour in the list is shown anew this often at most, in milliseconds, and takes at most a tenth of the
// time.
constexpr std::uint32_t kRefreshPeriod = 100;
constexpr std::uint32_t kRefreshShare = 10;
// Milliseconds between two attempts to start a timer that Windows refused.
constexpr DWORD kRetryPause = 20;
// Milliseconds for which a wait for the server does not fall asleep.
constexpr std::uint32_t kAnswerTime = 3;

// Commands that the tray icon's menu gives while a dialog is open.
bool mayInterrupt(unsigned command) {
    return command == IDM_EXIT || command == IDM_RECORD_EVENTS || command == IDM_TRAY_RESTORE;
}

// Passes every keystroke on.
LRESULT CALLBACK keyboardProcedure(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

MainWindow::MainWindow(const ConsoleParts& parts)
    : Dialog(parts.resources, IDD_MAIN),
      parts_(parts),
      poster_(timer::kHandOver, timer::kHandOverPeriod),
      session_(*this, parts.link, poster_, parts.log, parts.clock, parts.settings.values(), win32::makeSortKey),
      list_(session_.events().rows(), parts.resources, parts.clock),
      help_(parts.resources, parts.log),
      pleaseWait_(parts.resources, IDS_WAIT_UPDATING) {}

MainWindow::~MainWindow() {
    win32::setIdleWork(nullptr);
    win32::setHelpHandler(nullptr);
    EventCallback::makeCurrent(nullptr);
}

void MainWindow::warnAboutScratchFolder(bool ready) {
    if (ready || scratchWarningShown_) return;
    scratchWarningShown_ = true;
    win32::showMessage(window(), parts_.resources.text(IDS_CALL_QUEUE_ERROR),
                       parts_.resources.text(IDS_CALL_QUEUE_ERROR_CAPTION));
}

// ---------------------------------------------------------------------------------------------------------------------
// Start-up

bool MainWindow::onInit() {
    poster_.setWindow(window());
    menu_ = parts_.resources.loadMenu(IDR_MAIN_MENU);
    trayMenu_ = parts_.resources.loadMenu(IDR_TRAY_MENU);
    accelerators_ = parts_.resources.loadAccelerators(IDR_MAIN_ACCELERATORS);
    SetMenu(window(), menu_.get());
    extendSystemMenu();
    setIcons();
    parts_.log.log("OnInitDialog: Reading from registry key '%s'", parts_.companyKey.c_str());
    parts_.log.OpenCloseDebugFile(false, true);
    parts_.log.log("Orvane Events Console Version %s started", programVersion().c_str());
    openLink();
    help_.choose(parts_.files, parts_.settings.installFolder());
    // The language was chosen before the tracking file was open.
    for (const std::string& line : parts_.resources.refusedLanguages())
        parts_.log.log("%s", line.c_str());
    win32::setHelpHandler([this](unsigned topic) { help_.open(GetLastActivePopup(topmostModal()), topic); });
    list_.attach(control(IDC_EVENT_LIST));
    installKeyboardHook();
    parts_.log.toggleRecordEvents();
    recordEvents();
    applyTraySetting();
    if (parts_.link.canStart()) {
        showTitle({});
        if (!parts_.link.isConsoleMode())
            parts_.log.log("*** Orvane Enterprise Events Application Stand-alone Startup ***");
    }
    restoreSize();
    refreshEventList();
    RedrawWindow(window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    onSize(SIZE_RESTORED);
    win32::setIdleWork([this] { return deliverWhenIdle(); });
    startTimer(timer::kLogon, timer::kLogonPeriod);
    startTimer(timer::kIdle, timer::kIdlePeriod);
    parts_.log.endStartUp();
    return true;
}

void MainWindow::extendSystemMenu() {
    const std::string text = parts_.resources.text(IDS_ABOUT_MENU);
    const HMENU menu = GetSystemMenu(window(), FALSE);
    if (menu == nullptr || text.empty()) return;
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuA(menu, MF_STRING, IDM_ABOUT_SYSTEM, text.c_str());
}

void MainWindow::setIcons() {
    bigIcon_ = win32::Resources::loadIcon(IDI_MAIN, GetSystemMetrics(SM_CXICON));
    smallIcon_ = win32::Resources::loadIcon(IDI_MAIN, GetSystemMetrics(SM_CXSMICON));
    SendMessageA(window(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(bigIcon_.get()));
    SendMessageA(window(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.get()));
}

void MainWindow::openLink() {
    if (!win32::loadPassThruLibrary(parts_.link, parts_.log)) return;
    libraryVersion_ = parts_.link.readVersion().value_or(LibraryVersion{});
    parts_.log.log("Loaded KSPassThruDll Version %d.%d.%d", static_cast<int>(libraryVersion_.major),
                   static_cast<int>(libraryVersion_.minor), static_cast<int>(libraryVersion_.build));
    EventCallback::makeCurrent(&session_.callback());
    parts_.link.open(EventCallback::receive);
    const bool consoleMode = parts_.link.isConsoleMode();
    session_.setConsoleMode(consoleMode);
    warnAboutScratchFolder(parts_.settings.load(consoleMode ? StartMode::kConsole : StartMode::kStandalone));
    parts_.log.log("Opened KSPassThruDll with %d flags", static_cast<int>(parts_.link.flags()));
    parts_.link.enableDebug();
    libraryVersionText_ = win32::passThruVersionText();
}

void MainWindow::installKeyboardHook() {
    keyboardHook_.reset(SetWindowsHookExA(WH_KEYBOARD, keyboardProcedure, nullptr, GetCurrentThreadId()));
}

void MainWindow::restoreSize() {
    const Settings& settings = parts_.settings.values();
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    if (settings.startWidth > 0 && settings.startHeight > 0) {
        // Never larger than the screen, which may be another one today. WM_GETMINMAXINFO sees to the least size.
        const int width = std::min<int>(settings.startWidth, work.right - work.left);
        const int height = std::min<int>(settings.startHeight, work.bottom - work.top);
        SetWindowPos(window(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    centerOn(nullptr);
}

void MainWindow::rememberSize() {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (!GetWindowPlacement(window(), &placement)) return;
    const RECT& normal = placement.rcNormalPosition;
    parts_.settings.values().startWidth = normal.right - normal.left;
    parts_.settings.values().startHeight = normal.bottom - normal.top;
}

// ---------------------------------------------------------------------------------------------------------------------
// Messages

bool MainWindow::onCommand(unsigned id, unsigned) {
    // A command that was given twice, or while a dialog opened, comes when the dialog is there.
    if (IsWindowEnabled(window()) == 0 && !mayInterrupt(id)) return true;
    switch (id) {
        case IDM_LOGOFF:
            session_.logoff();
            return true;
        case IDM_EXIT:
            exitConsole();
            return true;
        case IDM_PREFERENCES:
            editPreferences();
            return true;
        case IDM_RECORD_EVENTS:
            recordEvents();
            return true;
        case IDM_CLEAR_FILE:
            clearFile();
            return true;
        case IDM_OPEN_SUPPORT_FOLDER:
            openSupportFolder();
            return true;
        case IDM_CREATE_EVENT:
            createEvent();
            return true;
        case IDM_MODIFY_EVENT:
            modifySelectedEvent();
            return true;
        case IDM_SCHEDULES:
            editSchedules();
            return true;
        case IDM_DELETE_EVENT:
            deleteSelectedEvent();
            return true;
        case IDM_HELP:
            help_.openFirstPage(window());
            return true;
        case IDM_ABOUT:
            showAbout();
            return true;
        case IDM_TRAY_RESTORE:
            win32::bringToForeground(window());
            return true;
        case IDOK:
            runFromList(IDM_MODIFY_EVENT);
            return true;
        default:
            // Esc is no command of a main window.
            return id == IDCANCEL;
    }
}

std::optional<LRESULT> MainWindow::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_EVENT_LIST) return std::nullopt;
    if (header.code == NM_DBLCLK) {
        const bool hitsRow = reinterpret_cast<NMITEMACTIVATE&>(header).iItem >= 0;
        runFromList(hitsRow ? IDM_MODIFY_EVENT : IDM_CREATE_EVENT);
        return 0;
    }
    return list_.onNotify(header);
}

// A command that the list's own gestures stand for: given when the menu offers it.
void MainWindow::runFromList(unsigned command) {
    const UINT state = GetMenuState(menu_.get(), command, MF_BYCOMMAND);
    if (state != static_cast<UINT>(-1) && (state & (MF_GRAYED | MF_DISABLED)) == 0)
        PostMessageA(window(), WM_COMMAND, command, 0);  // the list finishes with its click first
}

bool MainWindow::onTimer(std::uintptr_t timerId) {
    // Whichever timer it is, undelivered events come first: a post that was refused left no other call.
    retryRefusedTimers();
    if (timerId == timer::kHandOver || session_.hasUndeliveredEvents()) deliverEvents();
    if (timerId != timer::kHandOver) session_.onTimer(timerId);
    // Windows' own handling of the timer follows.
    return false;
}

void MainWindow::onClose() {
    exitConsole();
}

bool MainWindow::onPreview(MSG& message) {
    return accelerators_ != nullptr && TranslateAcceleratorA(window(), accelerators_, &message) != 0;
}

std::optional<LRESULT> MainWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (private_message::isHandedOver(message)) {
        deliverEvents();
        return 0;
    }
    switch (message) {
        case private_message::kTrayIcon:
            onTrayMessage(lParam);
            return 0;
        case WM_SYSCOMMAND:
            if (wParam != IDM_ABOUT_SYSTEM) return std::nullopt;
            showAbout();
            return 0;
        case WM_SIZE:
            onSize(wParam);
            return 0;
        case WM_GETMINMAXINFO: {
            if (control(IDC_EVENT_LIST) == nullptr) return std::nullopt;
            auto& limits = *reinterpret_cast<MINMAXINFO*>(lParam);
            limits.ptMinTrackSize.x = list_.minimumWidth(dpi()) + GetSystemMetrics(SM_CXVSCROLL) + scale(16);
            limits.ptMinTrackSize.y = scale(240);
            return 0;
        }
        case WM_PAINT:
            if (!IsIconic(window())) return std::nullopt;
            paintIcon();
            return 0;
        case WM_QUERYDRAGICON:
            return reinterpret_cast<LRESULT>(bigIcon_.get());
        case WM_ENDSESSION:
            if (wParam == FALSE) return std::nullopt;
            rememberSize();
            session_.doShutdown();
            parts_.settings.save();
            endDialog(IDCANCEL);
            return 0;
        case WM_DESTROY:
            session_.doShutdown();
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

void MainWindow::onSize(WPARAM kind) {
    if (kind == SIZE_MINIMIZED) {
        if (parts_.settings.values().hideMinimized != 0) ShowWindow(window(), SW_HIDE);
        return;
    }
    RECT client{};
    GetClientRect(window(), &client);
    const HWND list = control(IDC_EVENT_LIST);
    SetWindowPos(list, nullptr, 0, 0, client.right, client.bottom, SWP_NOZORDER | SWP_NOACTIVATE);
    list_.layOutColumns(dpi());
}

void MainWindow::paintIcon() {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window(), &paint);
    RECT client{};
    GetClientRect(window(), &client);
    const int width = GetSystemMetrics(SM_CXICON);
    const int height = GetSystemMetrics(SM_CYICON);
    DrawIcon(context, (client.right - width + 1) / 2, (client.bottom - height + 1) / 2, bigIcon_.get());
    EndPaint(window(), &paint);
}

// ---------------------------------------------------------------------------------------------------------------------
// Events from the library

void MainWindow::deliverEvents() {
    const bool done = session_.deliverEvents();
    if (done)
        stopTimer(timer::kHandOver);
    else
        startTimer(timer::kHandOver, timer::kHandOverPeriod);
    showChanges(done);
}

bool MainWindow::deliverWhenIdle() {
    const bool someRefused = retryRefusedTimers();
    if (session_.hasUndeliveredEvents()) deliverEvents();
    if (session_.hasUndeliveredEvents()) return true;
    // Nothing else may come for what waits for its timer.
    if (someRefused) Sleep(kRetryPause);
    return someRefused;
}

bool MainWindow::retryRefusedTimers() {
    return refusedTimers_.retry([this](std::uintptr_t timerId, std::uint32_t milliseconds) {
        return SetTimer(window(), timerId, milliseconds, nullptr) != 0;
    });
}

void MainWindow::showChanges(bool isLast) {
    if (list_.isUpToDate()) return;
    const std::uint32_t start = parts_.clock.tickCount();
    if (!isLast && start - lastRefresh_ < refreshPause_) return;
    list_.refresh();
    UpdateWindow(control(IDC_EVENT_LIST));
    lastRefresh_ = parts_.clock.tickCount();
    refreshPause_ = std::max(kRefreshPeriod, (lastRefresh_ - start) * kRefreshShare);
}

// ---------------------------------------------------------------------------------------------------------------------
// Commands

void MainWindow::exitConsole() {
    rememberSize();
    session_.doShutdown();
    endDialog(IDOK);
}

void MainWindow::recordEvents() {
    parts_.log.toggleRecordEvents();
    const UINT check = MF_BYCOMMAND | (parts_.log.isRecording() ? MF_CHECKED : MF_UNCHECKED);
    CheckMenuItem(menu_.get(), IDM_RECORD_EVENTS, check);
    CheckMenuItem(trayMenu_.get(), IDM_RECORD_EVENTS, check);
    parts_.log.OpenCloseDebugFile(false, false);
}

void MainWindow::clearFile() {
    if (win32::askYesNo(window(), parts_.resources.text(IDS_CLEAR_FILE), parts_.resources.text(IDS_CLEAR_FILE_CAPTION)))
        parts_.log.clear();
}

void MainWindow::openSupportFolder() {
    ShellExecuteA(window(), "open", parts_.log.supportFolder().c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void MainWindow::showAbout() {
    const auto line = [this](unsigned id, std::initializer_list<FillValue> values) {
        return fillIn(parts_.resources.text(id), values);
    };
    CAboutDlg about(parts_.resources, {line(IDS_ABOUT_PROGRAM, {programVersion()}),
                                       line(IDS_ABOUT_INTERFACE, {static_cast<long>(libraryVersion_.major),
                                                                  static_cast<long>(libraryVersion_.minor),
                                                                  static_cast<long>(libraryVersion_.build)}),
                                       line(IDS_ABOUT_LIBRARY, {libraryVersionText_})});
    about.runModal(window());
}

void MainWindow::createEvent() {
    runEditor(nullptr);
}

void MainWindow::modifySelectedEvent() {
    if (const EventRecord* event = list_.selectedRecord()) runEditor(event);
}

// `event` is copied by the editor: what becomes of it while the editor is open is found by key afterwards.
void MainWindow::runEditor(const EventRecord* event) {
    CSetupEventDlg editor(
        {parts_.resources, parts_.link, session_.directory(), session_.schedules(), session_.fileReader(), parts_.log,
         parts_.clock, win32::makeSortKey, [this] { return session_.isLoggedOn(); }},
        event);
    if (!editor.run(window())) return;
    const EventRecord& saved = session_.saveEvent(editor.record());
    list_.refresh();
    if (const auto row = session_.events().rows().rowOf(saved)) list_.select(static_cast<int>(*row));
}

void MainWindow::editPreferences() {
    Settings& settings = parts_.settings.values();
    CPreferencesDlg preferences(parts_.resources, parts_.log, settings.hideMinimized != 0, session_.serverSettings());
    if (!preferences.run(window())) return;
    settings.hideMinimized = preferences.minimizesToTray() ? 1 : 0;
    applyTraySetting();
    if (!session_.isLoggedOn() || !preferences.email().isChanged()) return;
    preferences.email().applyTo(session_.serverSettings());
    session_.serverSettings().write(parts_.link);
}

void MainWindow::editSchedules() {
    CConfigureSchedulesDlg(parts_.resources, session_.schedules(), win32::makeSortKey).runModal(window());
}

void MainWindow::deleteSelectedEvent() {
    const EventRecord* selected = list_.selectedRecord();
    if (selected == nullptr) return;
    const std::string key = selected->key;
    if (!win32::askYesNo(window(), parts_.resources.text(IDS_DELETE_EVENT),
                         parts_.resources.text(IDS_DELETE_EVENT_CAPTION)))
        return;
    // While the question was open the Event may have moved or gone.
    EventRecord* record = session_.events().find(key);
    if (record == nullptr) record = list_.selectedRecord();
    if (record == nullptr || record->key != key) return;
    const EventRows& rows = session_.events().rows();
    const auto row = rows.rowOf(*record);
    session_.deleteEvent(*record);
    const int next = row ? std::min(static_cast<int>(*row), static_cast<int>(rows.size()) - 1) : -1;
    list_.refresh();
    list_.select(next);
}

// ---------------------------------------------------------------------------------------------------------------------
// Tray icon

void MainWindow::applyTraySetting() {
    if (parts_.settings.values().hideMinimized != 0)
        trayIcon_.add(window(), private_message::kTrayIcon, smallIcon_.get(), parts_.resources.text(IDS_TITLE_CONSOLE));
    else
        trayIcon_.remove();
}

void MainWindow::onTrayMessage(LPARAM mouseMessage) {
    if (mouseMessage == WM_LBUTTONUP) {
        win32::bringToForeground(window());
    } else if (mouseMessage == WM_RBUTTONUP) {
        POINT at{};
        GetCursorPos(&at);
        // Without this the menu would stay open when the operator clicks elsewhere.
        SetForegroundWindow(window());
        TrackPopupMenu(GetSubMenu(trayMenu_.get(), 0), TPM_RIGHTBUTTON, at.x, at.y, 0, window(), nullptr);
        PostMessageA(window(), WM_NULL, 0, 0);
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// SessionHost

void MainWindow::startTimer(std::uintptr_t timerId, std::uint32_t milliseconds) {
    refusedTimers_.note(timerId, milliseconds, SetTimer(window(), timerId, milliseconds, nullptr) != 0);
}

void MainWindow::stopTimer(std::uintptr_t timerId) {
    refusedTimers_.forget(timerId);
    KillTimer(window(), timerId);
}

LogonOutcome MainWindow::runLogonDialog(const LogonEntry& entry) {
    CKSLogonDlg dialog(parts_.resources, parts_.link, parts_.log, entry);
    // After a server stop an editor or a message box may be open: the logon comes before it.
    LogonOutcome outcome = dialog.run(topmostWaiting());
    if (topmostModal() == window()) SetFocus(control(IDC_EVENT_LIST));
    return outcome;
}

void MainWindow::showTitle(const std::string& logonId) {
    const unsigned plain = parts_.link.isConsoleMode() ? IDS_TITLE_CONSOLE : IDS_TITLE_STANDALONE;
    const std::string title =
        logonId.empty() ? parts_.resources.text(plain) : fillIn(parts_.resources.text(IDS_TITLE_LOGGED_ON), {logonId});
    SetWindowTextA(window(), title.c_str());
}

void MainWindow::refreshEventList() {
    list_.refresh();
}

void MainWindow::openPleaseWait() {
    if (pleaseWait_.window() == nullptr) pleaseWait_.createModeless(window());
    UpdateWindow(pleaseWait_.window());
}

void MainWindow::closePleaseWait() {
    pleaseWait_.destroy();
}

void MainWindow::endMainWindow() {
    rememberSize();
    endDialog(IDCANCEL);
}

void MainWindow::removeKeyboardHook() {
    keyboardHook_.reset();
}

void MainWindow::removeTrayIcon() {
    trayIcon_.remove();
}

void MainWindow::pause(std::uint32_t milliseconds) {
    const std::uint32_t start = parts_.clock.tickCount();
    for (std::uint32_t passed = 0; passed < milliseconds; passed = parts_.clock.tickCount() - start) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - passed, QS_PAINT | QS_POSTMESSAGE | QS_SENDMESSAGE);
        MSG message;
        while (PeekMessageA(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE) ||
               PeekMessageA(&message, window(), private_message::kNewIntercom, private_message::kStartTimer, PM_REMOVE))
            DispatchMessageA(&message);
        if (session_.hasUndeliveredEvents()) deliverEvents();
    }
}

void MainWindow::handleMessagesAndSleep(std::uint32_t milliseconds) {
    win32::handleWaitingMessages();
    // Most answers of the server come within a millisecond; falling asleep and waking up takes longer.
    const std::uint32_t start = parts_.clock.tickCount();
    while (!session_.hasUndeliveredEvents() && parts_.clock.tickCount() - start < kAnswerTime)
        SwitchToThread();
    if (session_.hasUndeliveredEvents()) {
        deliverEvents();
        return;
    }
    // A message ends the sleep, so that the window answers at once.
    MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds, QS_ALLINPUT);
}

std::string MainWindow::findAdapterName(const std::string& serverAddress) {
    return win32::findAdapterName(serverAddress);
}

std::string MainWindow::programVersion() {
    return win32::fileVersionText(win32::programPath());
}

}  // namespace orvc
