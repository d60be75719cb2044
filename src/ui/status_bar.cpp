#include "ui/status_bar.h"

#include <commctrl.h>

#include <algorithm>

namespace orvc::ui {
namespace {

constexpr int kPadding = 14;  // pixels around a part's text
constexpr int kInset = 2;     // between the edge of a part and what stands in it
constexpr int kSteps = 1000;  // of the progress bar

}  // namespace

void StatusBar::attach(HWND bar, HWND cancel) {
    bar_ = bar;
    cancel_ = cancel;
    texts_.clear();
    edges_.clear();
}

int StatusBar::height() const {
    RECT area{};
    GetWindowRect(bar_, &area);
    return area.bottom - area.top;
}

void StatusBar::layOut() {
    SendMessageA(bar_, WM_SIZE, 0, 0);
    placeProgress();
}

int StatusBar::textWidth(const std::string& text) const {
    const HDC context = GetDC(bar_);
    const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageA(bar_, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(context, before);
    ReleaseDC(bar_, context);
    return static_cast<int>(size.cx) + kPadding;
}

void StatusBar::show(const std::vector<std::string>& texts) {
    if (texts == texts_) return;
    std::vector<int> edges;
    int edge = 0;
    for (const std::string& text : texts)
        edges.push_back(edge += textWidth(text));
    if (!edges.empty()) edges.back() = -1;
    if (edges != edges_) {
        SendMessageA(bar_, SB_SETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
        texts_.clear();
    }
    for (std::size_t part = 0; part < texts.size(); ++part)
        if (part >= texts_.size() || texts_[part] != texts[part])
            SendMessageA(bar_, SB_SETTEXTA, part, reinterpret_cast<LPARAM>(texts[part].c_str()));
    texts_ = texts;
    edges_ = std::move(edges);
    placeProgress();
}

void StatusBar::showHint(const std::optional<std::string>& hint) {
    if (!hint && !hasHint_) return;
    hasHint_ = hint.has_value();
    if (hint) SendMessageA(bar_, SB_SETTEXTA, SB_SIMPLEID, reinterpret_cast<LPARAM>(hint->c_str()));
    SendMessageA(bar_, SB_SIMPLE, hasHint_ ? TRUE : FALSE, 0);
    if (progress_ != nullptr && IsWindowVisible(cancel_)) ShowWindow(progress_, hasHint_ ? SW_HIDE : SW_SHOWNA);
}

void StatusBar::showProgress(const std::optional<Progress>& progress) {
    const bool isShown = progress.has_value();
    if (isShown && progress_ == nullptr) {
        progress_ = CreateWindowExA(0, PROGRESS_CLASSA, "", WS_CHILD, 0, 0, 0, 0, bar_, nullptr,
                                    GetModuleHandleA(nullptr), nullptr);
        SendMessageA(progress_, PBM_SETRANGE32, 0, kSteps);
    }
    if (isShown) {
        const std::size_t position = progress->all == 0 ? 0 : progress->done * kSteps / progress->all;
        SendMessageA(progress_, PBM_SETPOS, position, 0);
    }
    if (isShown == ((GetWindowLongA(cancel_, GWL_STYLE) & WS_VISIBLE) != 0)) return;
    // A hidden button must not keep the keyboard.
    if (!isShown && GetFocus() == cancel_) SendMessageA(GetParent(cancel_), WM_NEXTDLGCTL, 0, FALSE);
    ShowWindow(cancel_, isShown ? SW_SHOWNA : SW_HIDE);
    if (progress_ != nullptr) ShowWindow(progress_, isShown ? SW_SHOWNA : SW_HIDE);
    placeProgress();
}

// The bar stands in the last part behind its text, the button at its right edge.
void StatusBar::placeProgress() {
    if (progress_ == nullptr || !IsWindowVisible(progress_) || texts_.empty()) return;
    RECT area{};
    SendMessageA(bar_, SB_GETRECT, texts_.size() - 1, reinterpret_cast<LPARAM>(&area));
    InflateRect(&area, -kInset, -kInset);
    area.left = std::min(area.right, area.left + textWidth(texts_.back()));
    const std::string label = [this] {
        std::string text(64, '\0');
        text.resize(static_cast<std::size_t>(GetWindowTextA(cancel_, text.data(), static_cast<int>(text.size()))));
        return text;
    }();
    const int buttonWidth = textWidth(label) + kPadding;
    const int left = std::max<int>(area.left, area.right - GetSystemMetrics(SM_CXVSCROLL) - buttonWidth);
    MoveWindow(progress_, area.left, area.top, std::max<int>(left - kInset - area.left, 0), area.bottom - area.top,
               TRUE);
    POINT corner{left, area.top};
    MapWindowPoints(bar_, GetParent(cancel_), &corner, 1);
    SetWindowPos(cancel_, HWND_TOP, corner.x, corner.y, buttonWidth, area.bottom - area.top, SWP_NOACTIVATE);
}

std::optional<std::size_t> StatusBar::clickedPart(const NMHDR& header) const {
    if (header.hwndFrom != bar_ || header.code != static_cast<UINT>(NM_CLICK)) return std::nullopt;
    return static_cast<std::size_t>(reinterpret_cast<const NMMOUSE&>(header).dwItemSpec);
}

}  // namespace orvc::ui
