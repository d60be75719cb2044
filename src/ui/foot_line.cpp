#include "ui/foot_line.h"

#include <algorithm>

namespace orvc::ui {
namespace {

// In dialog units.
constexpr int kMargin = 7;
constexpr int kMarginWhenEmpty = 2;

int verticalUnits(HWND dialog, int units) {
    RECT area{0, 0, 0, units};
    MapDialogRect(dialog, &area);
    return area.bottom;
}

// A dialog that has grown stays on its monitor.
void keepOnMonitor(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    const LONG top = std::max(monitor.rcWork.top, std::min(area.top, monitor.rcWork.bottom - (area.bottom - area.top)));
    if (top != area.top)
        SetWindowPos(window, nullptr, area.left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void FootLine::attach(HWND line) {
    line_ = line;
    text_.clear();
    fitDialog();
}

void FootLine::show(const std::string& text) {
    if (line_ == nullptr || text == text_) return;
    text_ = text;
    SetWindowTextA(line_, text.c_str());
    fitDialog();
    if (!text.empty()) NotifyWinEvent(EVENT_SYSTEM_ALERT, line_, OBJID_CLIENT, CHILDID_SELF);
}

int FootLine::textHeight() const {
    RECT area{};
    GetClientRect(line_, &area);
    const HDC context = GetDC(line_);
    const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageA(line_, WM_GETFONT, 0, 0)));
    DrawTextA(context, text_.c_str(), -1, &area, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(context, before);
    ReleaseDC(line_, context);
    return area.bottom;
}

void FootLine::fitDialog() const {
    const HWND dialog = GetParent(line_);
    RECT line{};
    GetWindowRect(line_, &line);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&line), 2);
    const int height = text_.empty() ? 0 : textHeight();
    SetWindowPos(line_, nullptr, 0, 0, line.right - line.left, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    ShowWindow(line_, text_.empty() ? SW_HIDE : SW_SHOWNA);
    RECT client{};
    RECT window{};
    GetClientRect(dialog, &client);
    GetWindowRect(dialog, &window);
    const int wanted = line.top + height + verticalUnits(dialog, text_.empty() ? kMarginWhenEmpty : kMargin);
    SetWindowPos(dialog, nullptr, 0, 0, window.right - window.left, window.bottom - window.top + wanted - client.bottom,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (IsWindowVisible(dialog)) keepOnMonitor(dialog);
}

}  // namespace orvc::ui
