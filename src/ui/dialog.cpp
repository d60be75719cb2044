#include "ui/dialog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <new>
#include <utility>
#include <vector>

#include "support/placement.h"
#include "ui/message_loop.h"

namespace orvc::ui {
namespace {

// Messages whose answer is the dialog procedure's own result.
bool isAnsweredDirectly(UINT message) {
    return (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC) || message == WM_QUERYDRAGICON ||
           message == WM_COMPAREITEM || message == WM_VKEYTOITEM || message == WM_CHARTOITEM;
}

// The dialogs in runModal(), innermost last. User-interface thread.
std::vector<Dialog*>& runningDialogs() {
    static std::vector<Dialog*> dialogs;
    return dialogs;
}

HelpHandler& helpHandler() {
    static HelpHandler handler;
    return handler;
}

// Of a dialog to itself, with the topic. Apart from the numbers that dialogs give their own messages.
constexpr UINT kHelpAskedFor = WM_APP + 0x100;

int openMessageBoxes = 0;

int runMessageBox(HWND owner, const std::string& text, const std::string& caption, UINT kind) {
    ++openMessageBoxes;
    const int answer = MessageBoxA(owner, text.c_str(), caption.c_str(), kind);
    --openMessageBoxes;
    return answer;
}

FailureHandler& failureHandler() {
    static FailureHandler handler;
    return handler;
}

bool isOwnedBy(HWND window, HWND owner) {
    while (window != nullptr && window != owner)
        window = GetWindow(window, GW_OWNER);
    return window != nullptr;
}

ScreenArea toArea(const RECT& area) {
    return {area.left, area.top, area.right, area.bottom};
}

}  // namespace

Dialog::~Dialog() {
    destroy();
}

int Dialog::runModal(HWND owner) {
    result_.reset();
    runningDialogs().reserve(runningDialogs().size() + 1);
    // Before the dialog is made: while a box of its onInit() is open no command shall reach the owner.
    const bool ownerWasEnabled = owner != nullptr && EnableWindow(owner, FALSE) == 0;
    // Also before: whoever ends the dialogs above it while a box of its onInit() is open must end this one too.
    runningDialogs().push_back(this);
    if (!create(owner)) {
        runningDialogs().pop_back();
        if (ownerWasEnabled) EnableWindow(owner, TRUE);
        throw std::bad_alloc();
    }
    if (!result_) ShowWindow(window_, SW_SHOW);
    runMessageLoop([this] { return result_.has_value() || window_ == nullptr; },
                   [this](MSG& message) { return onPreview(message) || IsDialogMessageA(window_, &message); });
    // The owner comes back before the dialog goes, or another program's window would be activated.
    runningDialogs().pop_back();
    if (ownerWasEnabled) EnableWindow(owner, TRUE);
    destroy();
    return result_.value_or(-1);
}

bool Dialog::createModeless(HWND owner) {
    if (!create(owner)) return false;
    ShowWindow(window_, SW_SHOW);
    return true;
}

void Dialog::destroy() {
    if (window_ != nullptr) DestroyWindow(window_);
}

bool Dialog::create(HWND owner) {
    const DLGTEMPLATE* found = resources_.findDialog(templateId_);
    initFailed_ = false;
    if (found == nullptr || CreateDialogIndirectParamA(GetModuleHandleA(nullptr), found, owner, dialogProcedure,
                                                       reinterpret_cast<LPARAM>(this)) == nullptr)
        return false;
    if (initFailed_) destroy();
    return !initFailed_;
}

void Dialog::endDialog(int result) {
    if (result_) return;
    result_ = result;
    cancelDialogsAbove();
    // The loop may be waiting for a message.
    PostMessageA(window_, WM_NULL, 0, 0);
}

void Dialog::cancelDialogsAbove() {
    EnumThreadWindows(GetCurrentThreadId(), cancelForeignDialog, reinterpret_cast<LPARAM>(window_));
    for (auto dialog = runningDialogs().rbegin(); dialog != runningDialogs().rend() && *dialog != this; ++dialog)
        (*dialog)->endDialog(IDCANCEL);
}

bool Dialog::holdsEntriesAnywhere() {
    return std::ranges::any_of(runningDialogs(), [](const Dialog* dialog) { return dialog->holdsEntries(); });
}

HWND Dialog::topmostModal() {
    // The last one may still be without its window.
    const auto& dialogs = runningDialogs();
    const auto found = std::find_if(dialogs.rbegin(), dialogs.rend(),
                                    [](const Dialog* dialog) { return dialog->window() != nullptr; });
    return found != dialogs.rend() ? (*found)->window() : nullptr;
}

bool Dialog::closeMenuAndDropDown() {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &state)) return false;
    if ((state.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0) {
        EndMenu();
        return true;
    }
    char className[16] = "";
    if (state.hwndFocus != nullptr) GetClassNameA(state.hwndFocus, className, sizeof className);
    if (lstrcmpiA(className, "ComboBox") == 0) SendMessageA(state.hwndFocus, CB_SHOWDROPDOWN, FALSE, 0);
    return false;
}

HWND Dialog::topmostWaiting() {
    HWND found = topmostModal();
    EnumThreadWindows(GetCurrentThreadId(), findForeignDialog, reinterpret_cast<LPARAM>(&found));
    return found;
}

BOOL CALLBACK Dialog::findForeignDialog(HWND window, LPARAM found) {
    HWND& topmost = *reinterpret_cast<HWND*>(found);
    if (isForeignDialogAbove(window, topmost)) topmost = window;
    return TRUE;
}

// Answers a message box or another dialog of Windows' own above `dialogWindow` with No or Cancel.
BOOL CALLBACK Dialog::cancelForeignDialog(HWND window, LPARAM dialogWindow) {
    if (isForeignDialogAbove(window, reinterpret_cast<HWND>(dialogWindow)))
        PostMessageA(window, WM_COMMAND, GetDlgItem(window, IDNO) != nullptr ? IDNO : IDCANCEL, 0);
    return TRUE;
}

bool Dialog::isForeignDialogAbove(HWND window, HWND dialogWindow) {
    char className[16] = "";
    GetClassNameA(window, className, sizeof className);
    return lstrcmpiA(className, "#32770") == 0 && IsWindowVisible(window) && window != dialogWindow &&
           isOwnedBy(window, dialogWindow) &&
           reinterpret_cast<DLGPROC>(GetWindowLongPtrA(window, DWLP_DLGPROC)) != dialogProcedure;
}

INT_PTR CALLBACK Dialog::dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        auto* created = reinterpret_cast<Dialog*>(lParam);
        created->window_ = window;
        SetWindowLongPtrA(window, DWLP_USER, lParam);
    }
    auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (dialog == nullptr) return FALSE;
    try {
        return dialog->handle(message, wParam, lParam);
    } catch (const std::exception& error) {
        std::array<char, 256> text;
        std::snprintf(text.data(), text.size(), "dialogProcedure: Message 0x%x failed: %s", message, error.what());
        reportFailure(text.data());
        if (message == WM_INITDIALOG) dialog->initFailed_ = true;
        if (message == WM_COMMAND) tellFailure(window, error);
        return FALSE;
    }
}

INT_PTR Dialog::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    std::optional<LRESULT> result;
    switch (message) {
        case WM_INITDIALOG:
            return onInit();
        case WM_COMMAND:
            if (onCommand(LOWORD(wParam), HIWORD(wParam))) return TRUE;
            break;
        case WM_NOTIFY:
            result = onNotify(*reinterpret_cast<NMHDR*>(lParam));
            break;
        case WM_TIMER:
            if (onTimer(wParam)) return TRUE;
            break;
        case WM_CLOSE:
            onClose();
            return TRUE;
        case WM_HELP:
            askForHelp();
            result = TRUE;
            break;
        case kHelpAskedFor:
            if (helpHandler()) helpHandler()(static_cast<unsigned>(wParam));
            return TRUE;
        case WM_NCDESTROY:
            onDestroy();
            SetWindowLongPtrA(window_, DWLP_USER, 0);
            window_ = nullptr;
            return FALSE;
        default:
            break;
    }
    if (!result) result = onMessage(message, wParam, lParam);
    if (!result) return FALSE;
    if (isAnsweredDirectly(message)) return static_cast<INT_PTR>(*result);
    SetWindowLongPtrA(window_, DWLP_MSGRESULT, *result);
    return TRUE;
}

// F1: in this window, or in a box or menu of Windows' own above it. A menu is closed first, and help opens from the
// message loop, so that whatever window opens then does so as it does at any other time.
void Dialog::askForHelp() const {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    if (GetGUIThreadInfo(GetCurrentThreadId(), &state) && (state.flags & GUI_INMENUMODE) != 0) EndMenu();
    PostMessageA(window_, kHelpAskedFor, topicOfActiveWindow(), 0);
}

// What is active may not be what has the focus yet, and a dialog may have been opened from the loop of a box that is
// about to go.
unsigned Dialog::topicOfActiveWindow() const {
    const HWND active = GetActiveWindow();
    if (active == nullptr || active == GetAncestor(window_, GA_ROOT)) return helpTopic();
    for (const Dialog* dialog : runningDialogs())
        if (dialog->window() == active) return dialog->helpTopic();
    return openMessageBoxes > 0 ? kMessageBoxTopic : helpTopic();
}

bool Dialog::onCommand(unsigned id, unsigned) {
    if (id != IDOK && id != IDCANCEL) return false;
    endDialog(static_cast<int>(id));
    return true;
}

std::optional<LRESULT> Dialog::onNotify(NMHDR&) {
    return std::nullopt;
}

bool Dialog::onTimer(std::uintptr_t) {
    return false;
}

void Dialog::onClose() {
    onCommand(IDCANCEL, 0);
}

std::optional<LRESULT> Dialog::onMessage(UINT, WPARAM, LPARAM) {
    return std::nullopt;
}

std::string Dialog::readText(unsigned id) const {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(control(id))) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(control(id), text.data(), static_cast<int>(text.size()))));
    return text;
}

void Dialog::showText(unsigned id, const std::string& text) {
    SetWindowTextA(control(id), text.c_str());
}

// Keys that nobody has the focus for reach nothing.
void Dialog::moveFocusFrom(HWND target) {
    if (target != nullptr && GetFocus() == target) SendMessageA(window_, WM_NEXTDLGCTL, 0, FALSE);
}

void Dialog::enable(unsigned id, bool enabled) {
    if (!enabled) moveFocusFrom(control(id));
    EnableWindow(control(id), enabled);
}

void Dialog::show(unsigned id, bool shown) {
    if (!shown) moveFocusFrom(control(id));
    ShowWindow(control(id), shown ? SW_SHOW : SW_HIDE);
}

void Dialog::centerOn(HWND owner) {
    RECT around{};
    RECT own{};
    const bool onOwner = owner != nullptr && IsWindowVisible(owner) && !IsIconic(owner);
    GetWindowRect(window_, &own);
    if (onOwner)
        GetWindowRect(owner, &around);
    else
        SystemParametersInfoA(SPI_GETWORKAREA, 0, &around, 0);
    // The monitor that the middle lies on.
    const ScreenPoint middle = middleOf(toArea(around));
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoA(MonitorFromPoint({middle.x, middle.y}, MONITOR_DEFAULTTONEAREST), &monitor))
        monitor.rcWork = around;
    const ScreenPoint at =
        centerWithin(toArea(monitor.rcWork), toArea(around), own.right - own.left, own.bottom - own.top);
    SetWindowPos(window_, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

int Dialog::dpi() const {
    // GetDpiForWindow is younger than the oldest Windows that the console runs on.
    using GetDpiForWindowFunction = UINT(WINAPI*)(HWND);
    static const auto getDpiForWindow =
        reinterpret_cast<GetDpiForWindowFunction>(GetProcAddress(GetModuleHandleA("user32.dll"), "GetDpiForWindow"));
    if (getDpiForWindow != nullptr && window_ != nullptr)
        if (const UINT dpi = getDpiForWindow(window_)) return static_cast<int>(dpi);
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi;
}

void setFailureHandler(FailureHandler handler) {
    failureHandler() = std::move(handler);
}

void reportFailure(const char* what) {
    OutputDebugStringA(what);
    if (failureHandler()) failureHandler()(what);
}

void setHelpHandler(HelpHandler handler) {
    helpHandler() = std::move(handler);
}

void showMessage(HWND owner, const std::string& text, const std::string& caption) {
    runMessageBox(owner, text, caption, MB_OK);
}

void tellFailure(HWND owner, const std::exception& error) {
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    std::array<char, 512> text{};
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                   isMemory ? ERROR_NOT_ENOUGH_MEMORY : ERROR_INTERNAL_ERROR, 0, text.data(),
                   static_cast<DWORD>(text.size()), nullptr);
    MessageBoxA(owner, text.data(), nullptr, MB_OK | MB_ICONERROR);  // no caption = Windows' "Error"
}

bool askYesNo(HWND owner, const std::string& text, const std::string& caption) {
    return runMessageBox(owner, text, caption, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

}  // namespace orvc::ui
