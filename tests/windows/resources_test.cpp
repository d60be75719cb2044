// Every dialog, in every language: controls lie inside it and apart, no text is cut off, no letter is underlined twice.
#include <algorithm>
#include <map>
#include <optional>

#include "windows/resource_files.h"

namespace orvc::test {
namespace {

// Texts that the program puts where the template has others or none. Control 0 is the dialog's title. A range of ids
// goes from `first` to `last`. Columns have a width of their own, in pixels at 96 DPI.
constexpr int kWholeControl = 0;
constexpr int kOneOfSevenTabs = -1;
struct ShownText {
    unsigned dialog;
    unsigned control;
    unsigned first;
    unsigned last;
    int width = kWholeControl;
};
constexpr ShownText kShownTexts[] = {
    {IDD_LOGON, 0, IDS_LOGGING_IN, IDS_LOGGING_IN},
    {IDD_LOGON, 0, IDS_LOGON_WAITING, IDS_LOGON_WAITING},
    {IDD_LOGON, 0, IDS_LOGON_COUNTDOWN, IDS_LOGON_COUNTDOWN},
    {IDD_LOGON, IDC_LOGON_OPTIONS, IDS_OPTIONS_HIDE, IDS_OPTIONS_HIDE},
    {IDD_ABOUT, IDC_ABOUT_LIST, IDS_ABOUT_PROGRAM, IDS_ABOUT_LIBRARY},
    {IDD_PLEASE_WAIT, IDC_WAIT_TEXT, IDS_WAIT_SENDING, IDS_WAIT_SENDING},
    {IDD_SETUP_EVENT, 0, IDS_MODIFY_EVENT, IDS_MODIFY_EVENT},
    {IDD_SETUP_EVENT, IDC_EVENT_TRIGGER, IDS_TRIGGER_NONE, IDS_TRIGGER_TIME_OF_DAY},
    {IDD_SETUP_EVENT, IDC_EVENT_SOURCE, IDS_SELECT_SOURCE, IDS_NOON},
    {IDD_SETUP_EVENT, IDC_EVENT_TIMEOUT, IDS_SELECT_TIMEOUT, IDS_TRIGGER_AFTER},
    {IDD_SETUP_EVENT, IDC_EVENT_TIMEOUT_UNIT, IDS_SECONDS, IDS_MINUTES},
    {IDD_SETUP_EVENT, IDC_EVENT_SCHEDULE, IDS_SELECT_SCHEDULE, IDS_SELECT_SCHEDULE},
    {IDD_SETUP_EVENT, IDC_EVENT_RESPONSE, IDS_SELECT_RESPONSE, IDS_SELECT_RESPONSE},
    {IDD_SETUP_EVENT, IDC_EVENT_RESPONSE, IDS_RESPONSE_NONE, IDS_RESPONSE_UNKNOWN},
    {IDD_SETUP_EVENT, IDC_EVENT_DESTINATION, IDS_SELECT_DESTINATION, IDS_SELECT_DESTINATION},
    {IDD_SETUP_EVENT, IDC_EVENT_RESPONSE_LINE, IDS_RELAY_SELECT, IDS_EMPTY_FIELD},
    {IDD_EMAIL, IDOK, IDS_EMAIL_TEST_SEND, IDS_EMAIL_TEST_SEND},
    {IDD_EDIT_SCHEDULE, IDC_SCHEDULE_TIME, IDS_HOUR_NONE, IDS_HOUR_NONE},
    {IDD_EDIT_SCHEDULE, IDC_SCHEDULE_TIME + 2, IDS_AM, IDS_PM},
    {IDD_EDIT_SCHEDULE, IDC_SCHEDULE_DAY_TABS, IDS_DAY_TAB_SUNDAY, IDS_DAY_TAB_SATURDAY, kOneOfSevenTabs},
    {IDD_CONFIGURE_SCHEDULES, IDC_SCHEDULE_LIST, IDS_COLUMN_SCHEDULE_NAME, IDS_COLUMN_SCHEDULE_NAME, 200},
    {IDD_CONFIGURE_SCHEDULES, IDC_SCHEDULE_LIST, IDS_COLUMN_DAYS, IDS_COLUMN_TIMES, 70},
    {IDD_SERVER_AUDIO, IDC_AUDIO_LIST, IDS_AUDIO_COLUMN, IDS_AUDIO_COLUMN, 200},
};

int widthOf(const std::wstring& text, HFONT font) {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ before = SelectObject(screen, font);
    RECT area{};
    // An underlined letter's sign takes no room.
    DrawTextW(screen, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return area.right;
}

LONG buttonType(HWND control) {
    return classOf(control) == "Button" ? GetWindowLongA(control, GWL_STYLE) & BS_TYPEMASK : -1;
}

// Hidden controls and frames around others may lie where others do.
bool coversOthers(HWND control) {
    return (GetWindowLongA(control, GWL_STYLE) & WS_VISIBLE) != 0 && buttonType(control) != BS_GROUPBOX;
}

// Room for one line of text in a control, in pixels: without frames, a box to tick, an arrow.
int roomIn(HWND control) {
    RECT client{};
    GetClientRect(control, &client);
    const std::string kind = classOf(control);
    int taken = 0;
    if (kind == "Button") taken = 10;
    if (buttonType(control) == BS_GROUPBOX) taken = 20;
    if (buttonType(control) == BS_AUTOCHECKBOX) taken = GetSystemMetrics(SM_CXMENUCHECK) + 4;
    if (kind == "ComboBox") taken = GetSystemMetrics(SM_CXVSCROLL) + 8;
    if (kind == "ListBox" || kind == "Edit") taken = 6;
    return client.right - taken;
}

// A text that may take several lines, and does not find room in its control.
bool isCutOffInLines(const std::wstring& text, HWND control, HFONT font) {
    RECT client{};
    GetClientRect(control, &client);
    RECT area = client;
    const HDC context = GetDC(control);
    const HGDIOBJ before = SelectObject(context, font);
    DrawTextW(context, text.c_str(), -1, &area, DT_CALCRECT | DT_WORDBREAK);
    SelectObject(context, before);
    ReleaseDC(control, context);
    return area.bottom > client.bottom || area.right > client.right;
}

bool takesLines(HWND control) {
    RECT client{};
    GetClientRect(control, &client);
    constexpr int kTwoLines = 28;  // pixels
    return classOf(control) == "Static" && client.bottom >= kTwoLines;
}

int roomFor(const ShownText& shown, HWND control) {
    if (shown.width == kWholeControl) return roomIn(control);
    return (shown.width == kOneOfSevenTabs ? roomIn(control) / 7 : shown.width) - 12;
}

class ResourcesTest : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override { ASSERT_TRUE(file_.module() != nullptr); }

    ResourceFile file_{GetParam()};
};

TEST_P(ResourcesTest, ControlsLieInsideTheirDialogAndApart) {
    for (const unsigned id : file_.dialogs()) {
        SCOPED_TRACE("dialog " + std::to_string(id));
        const HWND dialog = file_.openDialog(id);
        ASSERT_NE(dialog, nullptr);
        RECT client{};
        GetClientRect(dialog, &client);
        std::vector<std::pair<int, RECT>> placed;
        for (const HWND control : controlsOf(dialog)) {
            const int controlId = GetDlgCtrlID(control);
            RECT area{};
            GetWindowRect(control, &area);
            MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
            EXPECT_TRUE(area.left >= 0 && area.top >= 0 && area.right <= client.right && area.bottom <= client.bottom)
                << "control " << controlId;
            if (!coversOthers(control)) continue;
            for (const auto& [other, otherArea] : placed) {
                RECT shared{};
                EXPECT_FALSE(IntersectRect(&shared, &area, &otherArea))
                    << "control " << controlId << " covers " << other;
            }
            placed.emplace_back(controlId, area);
        }
        DestroyWindow(dialog);
    }
}

TEST_P(ResourcesTest, NoTextIsCutOff) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const HFONT titleFont = CreateFontIndirectW(&metrics.lfCaptionFont);
    for (const unsigned id : file_.dialogs()) {
        SCOPED_TRACE("dialog " + std::to_string(id));
        const HWND dialog = file_.openDialog(id);
        ASSERT_NE(dialog, nullptr);
        const auto font = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
        RECT area{};
        GetWindowRect(dialog, &area);
        const int titleRoom = area.right - area.left - GetSystemMetrics(SM_CXSIZE) - 16;
        const auto expectRoom = [&](const std::wstring& text, int room, bool isTitle = false) {
            EXPECT_LE(widthOf(text, isTitle ? titleFont : font), room) << testing::PrintToString(text);
        };
        expectRoom(windowText(dialog), titleRoom, true);
        for (const HWND control : controlsOf(dialog)) {
            if ((GetWindowLongA(control, GWL_STYLE) & WS_VISIBLE) == 0) continue;
            if (takesLines(control))
                EXPECT_FALSE(isCutOffInLines(windowText(control), control, font)) << GetDlgCtrlID(control);
            else
                expectRoom(windowText(control), roomIn(control));
        }
        for (const ShownText& shown : kShownTexts) {
            if (shown.dialog != id) continue;
            const HWND control = GetDlgItem(dialog, static_cast<int>(shown.control));
            for (unsigned text = shown.first; text <= shown.last; ++text)
                expectRoom(file_.text(text), shown.control == 0 ? titleRoom : roomFor(shown, control),
                           shown.control == 0);
        }
        DestroyWindow(dialog);
    }
    DeleteObject(titleFont);
}

TEST_P(ResourcesTest, NoLetterIsUnderlinedTwiceInOneDialog) {
    for (const unsigned id : file_.dialogs()) {
        SCOPED_TRACE("dialog " + std::to_string(id));
        const HWND dialog = file_.openDialog(id);
        ASSERT_NE(dialog, nullptr);
        std::map<wchar_t, HWND> owners;
        const auto expectOwn = [&](const std::wstring& text, HWND control) {
            const wchar_t letter = underlinedLetter(text);
            EXPECT_TRUE(letter == 0 || owners.try_emplace(letter, control).first->second == control)
                << testing::PrintToString(text);
        };
        for (const HWND control : controlsOf(dialog))
            expectOwn(windowText(control), control);
        for (const ShownText& shown : kShownTexts) {
            const HWND control = GetDlgItem(dialog, static_cast<int>(shown.control));
            if (shown.dialog == id && classOf(control) == "Button") expectOwn(file_.text(shown.first), control);
        }
        DestroyWindow(dialog);
    }
}

// The main window has its menu, and Ctrl+Tab changes tabs. Esc cancels.
bool hasKeyOfItsOwn(HWND control, const std::wstring& text) {
    return classOf(control) == WC_TABCONTROLA || GetDlgCtrlID(control) == IDCANCEL || text == L"OK";
}

bool isLetter(wchar_t c) {
    return IsCharAlphaNumericW(c) != 0;
}

// The parts of a time or of an address stand in one row: the letter of the first leads to all.
bool continuesRow(HWND label, HWND control, HWND before) {
    if (before == nullptr) return false;
    const std::wstring text = windowText(label);
    const bool isSeen = (GetWindowLongA(label, GWL_STYLE) & WS_VISIBLE) != 0;
    RECT area{};
    RECT areaBefore{};
    GetWindowRect(control, &area);
    GetWindowRect(before, &areaBefore);
    return (!isSeen || std::ranges::none_of(text, isLetter)) && area.top == areaBefore.top;
}

TEST_P(ResourcesTest, EveryControlThatTakesInputIsReachedByAnUnderlinedLetter) {
    constexpr LONG kTakesInput = WS_TABSTOP | WS_VISIBLE;
    std::size_t count = 0;
    for (const unsigned id : file_.dialogs()) {
        if (id == IDD_MAIN) continue;
        SCOPED_TRACE("dialog " + std::to_string(id));
        const HWND dialog = file_.openDialog(id);
        ASSERT_NE(dialog, nullptr);
        HWND before = nullptr;
        for (const HWND control : controlsOf(dialog)) {
            if ((GetWindowLongA(control, GWL_STYLE) & kTakesInput) != kTakesInput) continue;
            const HWND label = classOf(control) == "Button" ? control : GetWindow(control, GW_HWNDPREV);
            const std::wstring text = label != nullptr ? windowText(label) : std::wstring();
            if (hasKeyOfItsOwn(control, text)) continue;
            ++count;
            ASSERT_NE(label, nullptr) << GetDlgCtrlID(control);
            const bool isSeen = (GetWindowLongA(label, GWL_STYLE) & WS_VISIBLE) != 0;
            EXPECT_TRUE((isSeen && underlinedLetter(text) != 0) || continuesRow(label, control, before))
                << GetDlgCtrlID(control) << " " << testing::PrintToString(text);
            before = control;
        }
        DestroyWindow(dialog);
    }
    EXPECT_GT(count, 60u);
}

// The middle of the text in a box or drop-down list of one line, in screen coordinates; none for other controls.
std::optional<int> middleOfText(HWND control) {
    RECT area{};
    if (classOf(control) == "ComboBox") {
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        if (!GetComboBoxInfo(control, &info)) return std::nullopt;
        area = info.rcItem;
    } else if (classOf(control) == "Edit" && (GetWindowLongA(control, GWL_STYLE) & ES_MULTILINE) == 0) {
        // As high as the line.
        SendMessageA(control, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
    } else {
        return std::nullopt;
    }
    MapWindowPoints(control, nullptr, reinterpret_cast<POINT*>(&area), 2);
    return (area.top + area.bottom) / 2;
}

// A label's text begins at its top.
int middleOfLabel(HWND label) {
    RECT area{};
    GetWindowRect(label, &area);
    const HDC context = GetDC(label);
    const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageA(label, WM_GETFONT, 0, 0)));
    TEXTMETRICA metrics{};
    GetTextMetricsA(context, &metrics);
    SelectObject(context, before);
    ReleaseDC(label, context);
    return area.top + metrics.tmHeight / 2;
}

TEST_P(ResourcesTest, DialogsFitASmallScreenAndLabelsStandOnTheLineOfTheirFields) {
    // Points of the font, and how much larger everything is: 96, 149 and 192 dots per inch.
    constexpr struct {
        WORD points;
        double scale;
    } kDisplays[] = {{9, 1}, {14, 14.0 / 9}, {18, 2}};
    constexpr int kWidth = 960, kHeight = 540;          // of the screen at 96 dots per inch
    constexpr int kFrameWidth = 16, kFrameHeight = 39;  // of a window of Windows 10
    for (const auto& [points, scale] : kDisplays) {
        std::size_t pairs = 0;
        for (const unsigned id : file_.dialogs()) {
            if (id == IDD_MAIN) continue;
            SCOPED_TRACE("dialog " + std::to_string(id) + " at " + std::to_string(points) + " points");
            const HWND dialog = file_.openDialog(id, points);
            ASSERT_NE(dialog, nullptr);
            RECT client{};
            GetClientRect(dialog, &client);
            EXPECT_LE(client.right + kFrameWidth * scale, kWidth * scale);
            EXPECT_LE(client.bottom + kFrameHeight * scale, kHeight * scale);
            for (const HWND label : controlsOf(dialog)) {
                const HWND field = GetWindow(label, GW_HWNDNEXT);
                if (classOf(label) != "Static" || field == nullptr) continue;
                const auto middle = middleOfText(field);
                RECT area{}, fieldArea{};
                GetWindowRect(label, &area);
                GetWindowRect(field, &fieldArea);
                const bool isBeside = area.right <= fieldArea.left && (GetWindowLongA(label, GWL_STYLE) & WS_VISIBLE);
                if (!middle || !isBeside) continue;
                ++pairs;
                EXPECT_NEAR(middleOfLabel(label), *middle, 2) << testing::PrintToString(windowText(label));
            }
            DestroyWindow(dialog);
        }
        EXPECT_GT(pairs, 25u);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryLanguage, ResourcesTest, testing::ValuesIn(kResourceFiles), [](const auto& suite) {
    const std::string name(suite.param);
    return name.substr(0, name.find('.'));
});

}  // namespace
}  // namespace orvc::test
