// Drives a running console through its windows, as an operator would: for the tour and for the tests under Wine.
#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace orvc::driver {

// One row of the Event list: name, status, last Event, response.
using EventRow = std::array<std::string, 4>;

// Environment variables set for the console's process, beside those of this one.
using Environment = std::vector<std::pair<std::string, std::string>>;

// Purpose: starts ORVSConfig.exe, finds its windows, types, clicks and reads.
//
// Waiting functions give up after kPatience and return null, false or what they have; the caller says what was missing.
// The destructor ends a console that still runs.
class ConsoleDriver {
  public:
    static constexpr DWORD kPatience = 15000;  // milliseconds

    ConsoleDriver() = default;
    ~ConsoleDriver();
    ConsoleDriver(const ConsoleDriver&) = delete;
    ConsoleDriver& operator=(const ConsoleDriver&) = delete;

    // `program`: path of ORVSConfig.exe; it is started in `workingFolder`, its own unless told otherwise. Returns false
    // when it cannot be started.
    bool start(const std::string& program, const Environment& environment = {}, std::string workingFolder = {});
    bool isRunning() const;
    // Waits until the console has ended; false when it did not.
    bool waitForEnd(DWORD milliseconds = kPatience);
    // Of a console that has ended.
    DWORD exitCode() const;
    void kill();
    HANDLE process() const { return process_; }

    // Tries again every few milliseconds until `condition` holds; returns whether it did.
    static bool waitUntil(const std::function<bool()>& condition, DWORD milliseconds = kPatience);

    // A visible window of the console that holds a control of that id; null when there is none (in time).
    HWND waitForWindowWith(unsigned controlId, DWORD milliseconds = kPatience);
    // A visible message box; null when there is none (in time).
    HWND waitForMessageBox(DWORD milliseconds = kPatience);
    HWND findWindowWith(unsigned controlId) const;
    HWND findMessageBox() const;
    bool waitUntilGone(HWND window, DWORD milliseconds = kPatience);

    HWND mainWindow(DWORD milliseconds = kPatience);
    HWND logonDialog(DWORD milliseconds = kPatience);

    // A control's text; that of a button as one reads it, without the sign of its underlined letter.
    static std::string textOf(HWND window);
    static std::string textOf(HWND dialog, unsigned controlId);
    static std::string messageText(HWND messageBox);
    // Replaces a control's text and tells the dialog, as typing does.
    static void type(HWND dialog, unsigned controlId, const std::string& text);
    // Clicks a button without waiting for what it starts.
    static void click(HWND dialog, unsigned controlId);
    // Clicks that take their time: without waiting for what they start. A row or tab that is not there is not clicked.
    void clickRow(HWND dialog, unsigned listId, int row);
    void doubleClickRow(HWND dialog, unsigned listId, int row);
    // Waits until the tab is the chosen one.
    void clickTab(HWND dialog, unsigned tabsId, int tab);
    // Chooses an entry of a drop-down list by its text and tells the dialog, as an operator's choice does. Returns
    // false when there is no such entry or the list is disabled.
    static bool chooseEntry(HWND dialog, unsigned listId, const std::string& text);
    // The text of a drop-down list's selected entry; empty when nothing is selected.
    static std::string selectedEntry(HWND dialog, unsigned listId);
    static bool isEnabled(HWND dialog, unsigned controlId);
    // Chooses a menu item without waiting for what it starts.
    void choose(unsigned command);
    // Chooses one until it has opened a window with that control, or a message box: while the configuration is received
    // most menu items do nothing. Null when none opened (in time).
    HWND open(unsigned command, unsigned controlId);
    HWND openMessageBox(unsigned command);

    // Fills the logon dialog in and presses Logon. The dialog must be open.
    void enterLogon(const std::string& logonId, const std::string& password, const std::string& address = "127.0.0.1");
    // Logs on as admin and waits until the Event list has `rows` rows.
    bool logOn(std::size_t rows);

    // The texts of a list control: its rows, each with that many columns.
    std::vector<std::vector<std::string>> readRows(HWND dialog, unsigned listId, int columns);

    // The Event list's contents, its row count, its selected row (-1 = none) and its column titles.
    std::vector<EventRow> readEvents();
    std::size_t eventCount();
    int selectedRow();
    EventRow columnTitles();
    int columnWidth(int column);
    // The parts of the main window's status bar.
    std::vector<std::string> statusTexts();
    // Selects that row alone, by keyboard focus and state, as a click does.
    void selectRow(int row);
    // Selects that row beside those that are selected, as a click with Ctrl does.
    void selectAlso(int row);
    // The row of the Event with that name; -1 when there is none.
    int rowOf(const std::string& name);

    // Saves the pixels of a window, as the display shows them, as a bitmap file.
    static bool saveScreenshot(HWND window, const std::string& path);

  private:
    HWND eventList();
    std::string readCell(HWND list, int row, int column);
    void setRowState(int row, unsigned mask, unsigned state);
    void clickItem(HWND control, UINT message, int item, bool twice);

    HANDLE process_ = nullptr;
    DWORD processId_ = 0;
};

}  // namespace orvc::driver
