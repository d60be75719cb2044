#include "console/workbench.h"

#include <windowsx.h>

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "resources/resource.h"
#include "support/text.h"
#include "ui/controls.h"
#include "ui/dialog.h"
#include "win32/code_page.h"

namespace orvc {
namespace {

// In pixels at 96 DPI.
constexpr int kMargin = 4;
constexpr int kStateWidth = 150;
constexpr int kBannerHeight = 24;
constexpr int kDetailHeight = 44;  // two lines
constexpr int kLeastListHeight = 120;

constexpr EventState kStates[] = {EventState::kAll, EventState::kAvailable, EventState::kDisabled,
                                  EventState::kWithProblems};

std::string textOf(HWND control) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(control)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

// Shows a text, unless the control has it.
void showIn(HWND control, std::string& shown, const std::string& text) {
    if (text == shown) return;
    shown = text;
    SetWindowTextA(control, text.c_str());
}

}  // namespace

void Workbench::attach(HWND window, HMENU menu, int dpi) {
    window_ = window;
    dpi_ = dpi;
    const ui::Resources& texts = s_.parts.resources;
    const std::wstring hint = win32::toWide(texts.text(IDS_FILTER_HINT));
    SendMessageW(control(IDC_FILTER), EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(hint.c_str()));
    ui::fillDropDown(control(IDC_FILTER_STATE),
                     std::vector{IDS_FILTER_ALL, IDS_FILTER_AVAILABLE, IDS_FILTER_DISABLED, IDS_FILTER_PROBLEMS}, 0,
                     [&](unsigned id) { return texts.text(id); });
    status_.attach(control(IDC_STATUS_BAR), control(IDC_CANCEL_CHANGES));
    s_.list.attach(control(IDC_EVENT_LIST), readView(s_.parts.settings.values()), [this] {
        told_.clear();  // the operator goes on
        SetTimer(window_, timer::kStatus, 0, nullptr);
    });
    columnMenus_.attach(menu, texts);
}

// ---------------------------------------------------------------------------------------------------------------------
// Layout

SIZE Workbench::minimumSize(int dpi) const {
    const auto scale = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
    return {s_.list.minimumWidth(dpi) + GetSystemMetrics(SM_CXVSCROLL) + scale(16),
            scale(kLeastListHeight + kBannerHeight + kDetailHeight + 4 * kMargin + 90)};
}

void Workbench::layOut(int dpi) {
    if (s_.list.readColumns(dpi_)) saveView();
    dpi_ = dpi;
    const auto scale = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
    const auto place = [this](unsigned id, int x, int y, int width, int height) {
        SetWindowPos(control(id), nullptr, x, y, std::max(width, 0), std::max(height, 0),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    };
    status_.layOut();
    RECT client{};
    GetClientRect(window_, &client);
    const int margin = scale(kMargin);
    int top = 0;
    int bottom = client.bottom - status_.height();
    ShowWindow(control(IDC_LINK_BANNER), banner_.empty() ? SW_HIDE : SW_SHOWNA);
    if (!banner_.empty()) {
        place(IDC_LINK_BANNER, 0, 0, client.right, scale(kBannerHeight));
        top += scale(kBannerHeight);
    }
    RECT box{};
    GetWindowRect(control(IDC_FILTER_STATE), &box);
    const int rowHeight = box.bottom - box.top;
    place(IDC_FILTER, margin, top + margin, client.right - 3 * margin - scale(kStateWidth), rowHeight);
    place(IDC_FILTER_STATE, client.right - margin - scale(kStateWidth), top + margin, scale(kStateWidth),
          8 * rowHeight);
    top += rowHeight + 2 * margin;
    const bool hasDetail = s_.list.view().showsDetail;
    ShowWindow(control(IDC_DETAIL), hasDetail ? SW_SHOWNA : SW_HIDE);
    if (hasDetail) {
        bottom -= scale(kDetailHeight);
        place(IDC_DETAIL, 0, bottom, client.right, scale(kDetailHeight));
    }
    place(IDC_EVENT_LIST, 0, top, client.right, bottom - top);
    s_.list.layOutColumns(dpi);
    place(IDC_EMPTY_LIST, margin, top + (bottom - top) / 3, client.right - 2 * margin, scale(kDetailHeight));
}

// ---------------------------------------------------------------------------------------------------------------------
// How things stand

LinkStatus Workbench::linkStatus() const {
    const Session& session = s_.session;
    const LocalSettings& settings = s_.parts.settings.values();
    LinkStatus link;
    if (session.isConnected())
        link.stage = session.isReady() && !session.isReloading() ? LinkStage::kConnected : LinkStage::kReceiving;
    link.isStandalone = !s_.parts.link.isConsoleMode();
    link.address = settings.ipAddress;
    link.port = settings.ipPort;
    link.logonId = logonId_;
    link.wasConnected = session.lostAt().has_value();
    if (const auto failure = session.logonFailure()) link.reason = reasonText(s_.parts.resources, *failure);
    if (link.wasConnected) link.lostAt = s_.parts.clock.toLocal(*session.lostAt());
    return link;
}

std::string Workbench::linkNote() const {
    return bannerText(s_.parts.resources, linkStatus());
}

ListCounts Workbench::counts() const {
    const EventTable::Model& model = s_.table.model();
    const EventChecker& checker = s_.session.checker();
    return {model.total(), model.size(), model.selectedCount(), checker.disabled(), checker.withProblems()};
}

void Workbench::refresh() {
    s_.list.hasSelection();  // takes over what the operator has selected
    showTexts();
    const auto progress = s_.events.progress();
    status_.showProgress(progress);
    if (progress)
        SetTimer(window_, timer::kStatus, timer::kStatusPeriod, nullptr);
    else
        KillTimer(window_, timer::kStatus);
}

void Workbench::showTexts() {
    const StringTable& texts = s_.parts.resources;
    const LinkStatus link = linkStatus();
    const ListCounts now = counts();
    showBanner(bannerText(texts, link));
    showEmptyList(emptyListText(texts, link, now,
                                {filterText_, state_ != EventState::kAll, state_ == EventState::kWithProblems}));
    showDetail(now);
    std::string last = told_;
    if (const auto progress = s_.events.progress())
        last = fillIn(texts.text(IDS_PROGRESS), {numberText(texts, progress->done), numberText(texts, progress->all)});
    std::vector<std::string> parts{linkText(texts, link), countText(texts, now)};
    statePart_.reset();
    if (const std::string states = stateText(texts, now); !states.empty()) {
        statePart_ = parts.size();
        parts.push_back(states);
    }
    if (s_.parts.log.isRecording()) parts.push_back(texts.text(IDS_RECORDING));
    parts.push_back(last);
    status_.show(parts);
}

void Workbench::tell(const std::string& sentence) {
    told_ = sentence;
    refreshSoon();
}

void Workbench::showBanner(const std::string& text) {
    if (text == banner_) return;
    const bool appearsOrGoes = text.empty() != banner_.empty();
    showIn(control(IDC_LINK_BANNER), banner_, text);
    if (appearsOrGoes) layOut(dpi_);
}

void Workbench::showEmptyList(const std::string& text) {
    const HWND place = control(IDC_EMPTY_LIST);
    if (text == emptyText_) return;
    showIn(place, emptyText_, text);
    if (text.empty())
        ShowWindow(place, SW_HIDE);
    else
        SetWindowPos(place, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void Workbench::showDetail(const ListCounts& now) {
    const StringTable& texts = s_.parts.resources;
    std::string text;
    if (now.selected == 1) {
        text = s_.describe(*s_.table.selectedRecord());
    } else if (now.selected > 1) {
        ListCounts states{now.selected, now.selected, 0, 0, 0};
        for (const EventRecord* const record : s_.table.model().selectedRecords()) {
            states.disabled += record->disabled != 0u;
            states.withProblems += s_.session.checker().codesOf(*record).hasProblem();
        }
        text = selectionText(texts, states);
    }
    showIn(control(IDC_DETAIL), detail_, text);
}

// ---------------------------------------------------------------------------------------------------------------------
// Filter

void Workbench::find() {
    SetFocus(control(IDC_FILTER));
    SendMessageA(control(IDC_FILTER), EM_SETSEL, 0, -1);
}

void Workbench::applyFilter() {
    filterText_ = textOf(control(IDC_FILTER));
    const int entry = ui::selectedEntry(control(IDC_FILTER_STATE));
    state_ = entry > 0 ? kStates[entry] : EventState::kAll;
    s_.list.hasSelection();
    s_.table.filterBy(filterText_, state_);
    s_.list.refresh();
    refresh();
}

void Workbench::setFilter(const std::string& text, EventState state) {
    isFiltering_ = true;
    SetWindowTextA(control(IDC_FILTER), text.c_str());
    ui::selectEntry(control(IDC_FILTER_STATE), std::ranges::find(kStates, state) - std::begin(kStates));
    isFiltering_ = false;
    applyFilter();
}

void Workbench::show(EventState state) {
    setFilter(state == EventState::kAll ? std::string() : filterText_, state);
}

void Workbench::showSame(EventColumnId column) {
    const EventRecord* const record = s_.list.focusedRecord();
    const auto row = record != nullptr ? s_.table.model().rowOf(*record) : std::nullopt;
    if (!row) return;
    const std::string key = record->key;
    setFilter(filterTextFor(column, s_.table.cell(*row, static_cast<std::size_t>(column)), s_.parts.resources),
              EventState::kAll);
    goToList(false);
}

void Workbench::escape() {
    if (!filterText_.empty() || state_ != EventState::kAll)
        setFilter({}, EventState::kAll);
    else
        goToList(false);
}

bool Workbench::enter() {
    if (GetFocus() != control(IDC_FILTER)) return false;
    goToList(true);
    return true;
}

void Workbench::goToList(bool selectFirst) {
    SetFocus(control(IDC_EVENT_LIST));
    if (selectFirst && !s_.list.hasSelection() && s_.table.size() > 0) s_.list.select(0);
}

void Workbench::nextPane() {
    const unsigned panes[] = {IDC_FILTER, IDC_EVENT_LIST, IDC_DETAIL};
    const HWND focus = GetFocus();
    const auto now = std::ranges::find_if(panes, [&](unsigned id) { return control(id) == focus; });
    auto next = now == std::end(panes) || now + 1 == std::end(panes) ? std::begin(panes) : now + 1;
    if (*next == IDC_DETAIL && !s_.list.view().showsDetail) next = std::begin(panes);
    SetFocus(control(*next));
}

void Workbench::nextProblem() {
    const EventTable::Model& model = s_.table.model();
    const std::size_t size = model.size();
    const std::size_t start = s_.list.hasSelection() ? model.firstSelected().value_or(0) + 1 : 0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t row = (start + i) % size;
        if (!s_.session.checker().codesOf(model.at(row)).hasProblem()) continue;
        s_.list.select(row);
        goToList(false);
        return;
    }
}

unsigned Workbench::whyNotSelected() {
    return s_.list.hasSelection() ? 0 : IDS_WHY_NO_SELECTION;
}

unsigned Workbench::whyNoPlace(EventColumnId column) {
    const EventRecord* const record = s_.list.focusedRecord();
    if (record == nullptr) return IDS_WHY_NO_SELECTION;
    const auto row = s_.table.model().rowOf(*record);
    const bool hasPlace = row && !s_.table.cell(*row, static_cast<std::size_t>(column)).empty();
    if (hasPlace) return 0;
    return column == EventColumnId::kSource ? IDS_WHY_NO_SOURCE : IDS_WHY_NO_DESTINATION;
}

unsigned Workbench::whyNoProblems() const {
    return s_.session.checker().withProblems() > 0 ? 0 : IDS_WHY_NO_PROBLEMS;
}

bool Workbench::isTyping() const {
    const HWND focus = GetFocus();
    return focus != nullptr && (focus == control(IDC_FILTER) || focus == control(IDC_DETAIL));
}

// ---------------------------------------------------------------------------------------------------------------------
// Columns

bool Workbench::runColumnCommand(unsigned id) {
    if (const auto shown = ColumnMenus::columnToToggle(id)) {
        s_.list.readColumns(dpi_);
        s_.list.toggleColumn(*shown);
        s_.list.layOutColumns(dpi_);
        s_.list.refresh();
    } else if (const auto sorted = ColumnMenus::columnToSortBy(id)) {
        s_.list.sortBy(*sorted);
    } else {
        return false;
    }
    saveView();
    return true;
}

void Workbench::saveView() {
    s_.list.readColumns(dpi_);
    writeView(s_.parts.settings.values(), s_.list.view());
    s_.parts.settings.save();
}

void Workbench::toggleDetail() {
    s_.list.view().showsDetail = !s_.list.view().showsDetail;
    saveView();
    layOut(dpi_);
    if (GetFocus() == control(IDC_DETAIL)) goToList(false);
}

void Workbench::updateMenu(HMENU menu) const {
    columnMenus_.update(s_.list.view(), s_.table.sortKeys());
    const auto tick = [menu](UINT id, bool isOn) {
        CheckMenuItem(menu, id, MF_BYCOMMAND | (isOn ? MF_CHECKED : MF_UNCHECKED));
    };
    tick(IDM_SHOW_DETAIL, s_.list.view().showsDetail);
    tick(IDM_SHOW_ALL, state_ == EventState::kAll);
    tick(IDM_SHOW_PROBLEMS, state_ == EventState::kWithProblems);
    tick(IDM_SHOW_DISABLED, state_ == EventState::kDisabled);
}

// ---------------------------------------------------------------------------------------------------------------------
// Messages

bool Workbench::onCommand(unsigned id, unsigned notification) {
    switch (id) {
        case IDC_FILTER:
            if (ui::isEditChange(notification) && !isFiltering_) applyFilter();
            return true;
        case IDC_FILTER_STATE:
            if (ui::isSelectionChange(notification) && !isFiltering_) applyFilter();
            return true;
        case IDC_CANCEL_CHANGES:
            s_.events.cancel();
            return true;
        case IDC_DETAIL:
            return true;
        default:
            return false;
    }
}

std::optional<LRESULT> Workbench::onNotify(NMHDR& header) {
    if (const auto part = status_.clickedPart(header)) {
        if (part == statePart_ && counts().withProblems > 0) show(EventState::kWithProblems);
        return 0;
    }
    if (header.idFrom != IDC_EVENT_LIST) return std::nullopt;
    if (header.code == static_cast<UINT>(LVN_COLUMNCLICK)) {
        s_.list.sortBy(s_.list.columnAt(reinterpret_cast<NMLISTVIEW&>(header).iSubItem));
        saveView();
        return 0;
    }
    return s_.list.onNotify(header);
}

bool Workbench::onContextMenu(HWND target, POINT place) {
    RECT area{};
    GetWindowRect(s_.list.header(), &area);
    if (target != s_.list.header() && (target != s_.list.window() || !PtInRect(&area, place))) return false;
    updateMenu(GetMenu(window_));
    columnMenus_.show(window_, place);
    return true;
}

HBRUSH Workbench::colorOf(HWND target, HDC context) const {
    if (target == control(IDC_LINK_BANNER)) {
        SetTextColor(context, GetSysColor(COLOR_INFOTEXT));
        SetBkColor(context, GetSysColor(COLOR_INFOBK));
        return GetSysColorBrush(COLOR_INFOBK);
    }
    if (target != control(IDC_EMPTY_LIST)) return nullptr;
    SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(context, GetSysColor(COLOR_WINDOW));
    return GetSysColorBrush(COLOR_WINDOW);
}

bool Workbench::onPreview(const MSG& message) {
    if (message.message != WM_KEYDOWN) return false;
    if (message.wParam == VK_DOWN && message.hwnd == control(IDC_FILTER)) {
        goToList(true);
        return true;
    }
    // A read-only edit of several lines does not know the key by itself.
    if (message.wParam == 'A' && GetKeyState(VK_CONTROL) < 0 && isTyping()) {
        SendMessageA(message.hwnd, EM_SETSEL, 0, -1);
        return true;
    }
    return false;
}

}  // namespace orvc
