#include "console/main_window.h"

#include <windowsx.h>

#include <functional>
#include <utility>

#include "checker/event_sentence.h"
#include "checker/problem_text.h"
#include "console/start_up.h"
#include "dialogs/logon_dialog.h"
#include "resources/resource.h"
#include "support/text.h"
#include "win32/collation.h"
#include "win32/folding.h"
#include "win32/network.h"
#include "win32/system_files.h"

namespace orvc {
namespace {

// Events whose texts are made ready to be searched in one idle moment: less than a millisecond's work.
constexpr std::size_t kTextsPerIdle = 200;

// Passes every keystroke on.
LRESULT CALLBACK keyboardProcedure(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// A logon that tells when an attempt has ended.
class TellingLogon final : public LogonLink {
  public:
    TellingLogon(LogonLink& link, std::function<void()> onEnd) : link_(link), onEnd_(std::move(onEnd)) {}
    StartResult start(const KSSocketAddress& address, const std::string& logonId,
                      const std::string& password) override {
        const StartResult result = link_.start(address, logonId, password);
        onEnd_();
        return result;
    }
    std::int32_t stop() override { return link_.stop(); }

  private:
    LogonLink& link_;
    std::function<void()> onEnd_;
};

}  // namespace

MainWindow::MainWindow(const ConsoleParts& parts)
    : Dialog(parts.resources, IDD_MAIN),
      parts_(parts),
      table_(parts.resources, parts.clock, win32::makeSortKey, win32::makeTextFolder()),
      list_(table_),
      events_(
          parts.clock, [this] { return list_.isUpToDate(); },
          [this] {
              list_.refresh();
              workbench_.refresh();
              UpdateWindow(list_.window());
          },
          [this] { return session_.isReady() && table_.prepareTexts(kTextsPerIdle); }),
      session_(*this, parts.link, events_.poster(), parts.log, parts.clock, parts.settings.values(), table_),
      eventCommands_(parts_, session_, table_, list_, [this](const std::string& text) { workbench_.tell(text); }),
      workbench_({parts_, session_, table_, list_, eventCommands_,
                  [this](const EventRecord& event) { return describe(event); }}),
      help_(parts.resources, parts.log),
      tray_(parts.resources),
      commands_({parts_, session_, eventCommands_, workbench_, tray_, help_, library_, [this] { exitConsole(); },
                 [this] { return programVersion(); }}),
      pleaseWait_(parts.resources, IDS_WAIT_UPDATING) {
    table_.judgeBy(session_.directory(), [this] { return session_.isReady(); });
    table_.nameSchedulesBy(session_.schedules());
    const EventChecker& checker = session_.checker();
    table_.tellProblemsBy(
        [this, &checker](const EventRecord& event) {
            return problemSummary(checker.problemsOf(event), parts_.resources);
        },
        [&checker](const EventRecord& event) { return checker.codesOf(event).hasProblem(); });
    session_.checker().observe(this);
}

MainWindow::~MainWindow() {
    ui::setHelpHandler(nullptr);
    ui::setFailureHandler(nullptr);
    session_.checker().observe(nullptr);
    EventCallback::makeCurrent(nullptr);
}

void MainWindow::warnAboutScratchFolder(bool ready) {
    if (ready || scratchWarningShown_) return;
    scratchWarningShown_ = true;
    ui::showMessage(window(), parts_.resources.text(IDS_CALL_QUEUE_ERROR),
                    parts_.resources.text(IDS_CALL_QUEUE_ERROR_CAPTION));
}

// What the Event does, then what is wrong with it.
std::string MainWindow::describe(const EventRecord& event) const {
    const EventNames names{session_.directory(), session_.checker().schedules(), session_.events()};
    std::string text = eventSentence(event, parts_.resources, names);
    const char* separator = "\r\n";
    for (const Problem& problem : session_.checker().problemsOf(event)) {
        text.append(separator).append(problemSentence(problem, parts_.resources, names));
        separator = " ";
    }
    return text;
}

// ---------------------------------------------------------------------------------------------------------------------
// Start-up

bool MainWindow::onInit() {
    events_.attach(window(), session_);
    menu_ = parts_.resources.loadMenu(IDR_MAIN_MENU);
    SetMenu(window(), menu_.get());
    extendSystemMenu(window(), parts_.resources);
    setIcons();
    parts_.log.log("OnInitDialog: Reading from registry key '%s'", parts_.companyKey.c_str());
    parts_.log.OpenCloseDebugFile(false, true);
    parts_.log.log("Orvane Events Console Version %s started", programVersion().c_str());
    warnAboutScratchFolder(openLink(parts_, session_, library_));
    help_.choose(parts_.files, parts_.settings.installFolder());
    // The language was chosen before the tracking file was open.
    for (const std::string& line : parts_.resources.refusedLanguages())
        parts_.log.log("%s", line.c_str());
    ui::setFailureHandler([this](const char* what) { parts_.log.log("%s", what); });
    ui::setHelpHandler([this](unsigned topic) { help_.open(GetLastActivePopup(topmostModal()), topic); });
    eventCommands_.attach(window());
    eventCommands_.setLinkNote([this] { return workbench_.linkNote(); });
    workbench_.attach(window(), menu_.get(), dpi());
    installKeyboardHook();
    tray_.attach(window(), smallIcon_.get());
    commands_.attach(window(), menu_.get());
    parts_.log.toggleRecordEvents();
    commands_.recordEvents();
    if (parts_.link.canStart()) {
        showTitle({});
        if (!parts_.link.isConsoleMode())
            parts_.log.log("*** Orvane Enterprise Events Application Stand-alone Startup ***");
    }
    restoreSize(window(), parts_.settings.values());
    centerOn(nullptr);
    refreshEventList();
    RedrawWindow(window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    onSize(SIZE_RESTORED);
    startTimer(timer::kLogon, timer::kLogonPeriod);
    startTimer(timer::kIdle, timer::kIdlePeriod);
    parts_.log.endStartUp();
    SetFocus(list_.window());
    return false;
}

void MainWindow::setIcons() {
    bigIcon_ = ui::Resources::loadIcon(IDI_MAIN, GetSystemMetrics(SM_CXICON));
    smallIcon_ = ui::Resources::loadIcon(IDI_MAIN, GetSystemMetrics(SM_CXSMICON));
    SendMessageA(window(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(bigIcon_.get()));
    SendMessageA(window(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.get()));
}

void MainWindow::installKeyboardHook() {
    keyboardHook_.reset(SetWindowsHookExA(WH_KEYBOARD, keyboardProcedure, nullptr, GetCurrentThreadId()));
}

// ---------------------------------------------------------------------------------------------------------------------
// Messages

bool MainWindow::onCommand(unsigned id, unsigned notification) {
    if (id == IDOK && !workbench_.enter()) commands_.runLater(IDM_MODIFY_EVENT);
    if (id == IDCANCEL) workbench_.escape();
    return workbench_.onCommand(id, notification) || commands_.run(id) || id == IDOK || id == IDCANCEL;
}

std::optional<LRESULT> MainWindow::onNotify(NMHDR& header) {
    if (header.idFrom == IDC_EVENT_LIST && header.code == NM_DBLCLK) {
        const bool hitsRow = reinterpret_cast<NMITEMACTIVATE&>(header).iItem >= 0;
        commands_.runLater(hitsRow ? IDM_MODIFY_EVENT : IDM_CREATE_EVENT);
        return 0;
    }
    return workbench_.onNotify(header);
}

bool MainWindow::onTimer(std::uintptr_t timerId) {
    if (timerId == timer::kEventCopy) eventCommands_.onTimer();
    if (timerId == timer::kStatus) workbench_.onStatusTimer();
    events_.onTimer(timerId);
    // Windows' own handling of the timer follows.
    return false;
}

void MainWindow::onClose() {
    exitConsole();
}

bool MainWindow::onPreview(MSG& message) {
    return commands_.translate(message) || workbench_.onPreview(message);
}

std::optional<LRESULT> MainWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (private_message::isQueued(message)) {
        events_.deliver();
        return 0;
    }
    if (message == Tray::taskbarCreatedMessage()) {
        tray_.onTaskbarCreated();
        return 0;
    }
    switch (message) {
        case private_message::kTrayIcon:
            tray_.onMouse(lParam);
            return 0;
        case WM_INITMENU:
            commands_.updateMenu();
            return std::nullopt;
        case WM_MENUSELECT:
            onMenuSelect(wParam, lParam);
            return std::nullopt;
        case WM_CONTEXTMENU:
            return onContextMenu(reinterpret_cast<HWND>(wParam), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)})
                       ? std::optional<LRESULT>(0)
                       : std::nullopt;
        case WM_CTLCOLORSTATIC:
            if (const HBRUSH brush = workbench_.colorOf(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam)))
                return reinterpret_cast<LRESULT>(brush);
            return std::nullopt;
        case WM_SYSCOMMAND:
            if (wParam != IDM_ABOUT_SYSTEM) return std::nullopt;
            commands_.run(IDM_ABOUT);
            return 0;
        case WM_SIZE:
            onSize(wParam);
            return 0;
        case WM_GETMINMAXINFO:
            if (control(IDC_EVENT_LIST) == nullptr) return std::nullopt;
            limitSize(*reinterpret_cast<MINMAXINFO*>(lParam));
            return 0;
        case WM_PAINT:
            if (!IsIconic(window())) return std::nullopt;
            paintIcon();
            return 0;
        case WM_QUERYDRAGICON:
            return reinterpret_cast<LRESULT>(bigIcon_.get());
        case WM_ENDSESSION:
            if (wParam == FALSE) return std::nullopt;
            exitConsole();
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
        if (parts_.settings.values().hideMinimized != 0) tray_.hideMinimized();
        return;
    }
    workbench_.layOut(dpi());
}

void MainWindow::limitSize(MINMAXINFO& limits) const {
    const SIZE least = workbench_.minimumSize(dpi());
    limits.ptMinTrackSize = {least.cx, least.cy};
}

// By mouse at a place; by keyboard, without one, at the row that has it.
bool MainWindow::onContextMenu(HWND target, POINT place) {
    const bool isByMouse = place.x != -1 || place.y != -1;
    if (isByMouse && workbench_.onContextMenu(target, place)) return true;
    if (target != list_.window()) return false;
    if (!isByMouse) {
        RECT row{};
        ListView_GetItemRect(list_.window(), static_cast<int>(list_.focusedRow().value_or(0)), &row, LVIR_LABEL);
        place = {row.left, row.bottom};
        ClientToScreen(list_.window(), &place);
    }
    commands_.showEventMenu(place);
    return true;
}

// A greyed item says why in the status bar.
void MainWindow::onMenuSelect(WPARAM wParam, LPARAM lParam) {
    constexpr UINT kClosed = 0xFFFF;
    const UINT flags = HIWORD(wParam);
    const bool isGreyedItem = (flags != kClosed || lParam != 0) && (flags & MF_GRAYED) != 0 && (flags & MF_POPUP) == 0;
    const unsigned reason = isGreyedItem ? commands_.whyNot(LOWORD(wParam)) : 0;
    workbench_.showHint(reason != 0 ? std::optional(parts_.resources.text(reason)) : std::nullopt);
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

void MainWindow::exitConsole() {
    rememberSize(window(), parts_.settings.values());
    workbench_.saveView();
    session_.doShutdown();
    saveSettings();
    endDialog(IDOK);
}

// ---------------------------------------------------------------------------------------------------------------------
// SessionHost

void MainWindow::startTimer(std::uintptr_t timerId, std::uint32_t milliseconds) {
    events_.startTimer(timerId, milliseconds);
}

void MainWindow::stopTimer(std::uintptr_t timerId) {
    events_.stopTimer(timerId);
}

LogonOutcome MainWindow::runLogonDialog(const LogonEntry& entry, LogonLink& link) {
    TellingLogon telling(link, [this] { workbench_.refreshSoon(); });
    CKSLogonDlg dialog(parts_.resources, telling, parts_.log, entry);
    // A menu that is open goes first; the logon comes with the next tick.
    if (closeMenuAndDropDown()) return {};
    // After a server stop an editor or a message box may be open: the logon comes in front of it.
    LogonOutcome outcome = dialog.run(topmostWaiting());
    if (topmostModal() == window()) SetFocus(control(IDC_EVENT_LIST));
    return outcome;
}

void MainWindow::saveSettings() {
    parts_.settings.save();
}

void MainWindow::showTitle(const std::string& logonId) {
    const unsigned plain = parts_.link.isConsoleMode() ? IDS_TITLE_CONSOLE : IDS_TITLE_STANDALONE;
    const std::string title =
        logonId.empty() ? parts_.resources.text(plain) : fillIn(parts_.resources.text(IDS_TITLE_LOGGED_ON), {logonId});
    SetWindowTextA(window(), title.c_str());
    workbench_.setLogonId(logonId);
}

void MainWindow::refreshEventList() {
    table_.model().touch();
    list_.refresh();
    workbench_.refresh();
    commands_.updateMenu();
}

void MainWindow::openPleaseWait() {
    if (pleaseWait_.window() == nullptr) pleaseWait_.createModeless(window());
    UpdateWindow(pleaseWait_.window());
}

void MainWindow::closePleaseWait() {
    pleaseWait_.destroy();
}

void MainWindow::endMainWindow() {
    rememberSize(window(), parts_.settings.values());
    endDialog(IDCANCEL);
}

void MainWindow::removeKeyboardHook() {
    keyboardHook_.reset();
}

void MainWindow::removeTrayIcon() {
    tray_.remove();
}

void MainWindow::pause(std::uint32_t milliseconds) {
    events_.pause(milliseconds);
}

std::string MainWindow::findAdapterName(const std::string& serverAddress) {
    return win32::findAdapterName(serverAddress);
}

std::string MainWindow::programVersion() {
    return win32::fileVersionText(win32::programPath());
}

}  // namespace orvc
