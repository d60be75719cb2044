#include "tour/console_driver.h"

#include <commctrl.h>

#include <algorithm>

#include "resources/resource.h"

namespace orvc::driver {
namespace {

constexpr DWORD kPollPause = 10;
constexpr DWORD kAnswerPatience = 500;
constexpr int kMessageTextId = 0xFFFF;

// Memory in the console's process, for messages that take a pointer.
class RemoteMemory {
  public:
    RemoteMemory(HANDLE process, std::size_t size)
        : process_(process),
          address_(VirtualAllocEx(process, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)) {}
    ~RemoteMemory() { VirtualFreeEx(process_, address_, 0, MEM_RELEASE); }
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;

    char* at(std::size_t offset) const { return static_cast<char*>(address_) + offset; }
    template <typename T>
    void write(const T& value) {
        WriteProcessMemory(process_, address_, &value, sizeof value, nullptr);
    }
    template <typename T>
    T read() const {
        T value{};
        ReadProcessMemory(process_, address_, &value, sizeof value, nullptr);
        return value;
    }
    std::string readText(std::size_t offset, std::size_t size) const {
        std::string text(size, '\0');
        ReadProcessMemory(process_, at(offset), text.data(), size, nullptr);
        text.resize(std::min(text.find('\0'), text.size()));
        return text;
    }

  private:
    HANDLE process_;
    void* address_;
};

constexpr std::size_t kStructRoom = 256;
constexpr std::size_t kTextRoom = 1024;

struct Search {
    DWORD processId;
    std::function<bool(HWND)> matches;
    HWND found;
};

BOOL CALLBACK examine(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    if (processId != search.processId || !IsWindowVisible(window) || !search.matches(window)) return TRUE;
    search.found = window;
    return FALSE;
}

HWND findWindow(DWORD processId, std::function<bool(HWND)> matches) {
    Search search{processId, std::move(matches), nullptr};
    EnumWindows(examine, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace

ConsoleDriver::~ConsoleDriver() {
    kill();
    if (process_ != nullptr) CloseHandle(process_);
}

bool ConsoleDriver::start(const std::string& program, const Environment& environment, std::string workingFolder) {
    std::vector<std::pair<std::string, std::string>> before;
    for (const auto& [name, value] : environment) {
        char old[4096] = "";
        GetEnvironmentVariableA(name.c_str(), old, sizeof old);
        before.emplace_back(name, old);
        SetEnvironmentVariableA(name.c_str(), value.c_str());
    }
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    std::string commandLine = "\"" + program + "\"";
    if (workingFolder.empty()) workingFolder = program.substr(0, program.find_last_of("\\/"));
    const bool ok = CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   workingFolder.c_str(), &startup, &started) != 0;
    for (const auto& [name, value] : before)
        SetEnvironmentVariableA(name.c_str(), value.empty() ? nullptr : value.c_str());
    if (!ok) return false;
    CloseHandle(started.hThread);
    process_ = started.hProcess;
    processId_ = started.dwProcessId;
    return true;
}

bool ConsoleDriver::isRunning() const {
    return process_ != nullptr && WaitForSingleObject(process_, 0) == WAIT_TIMEOUT;
}

bool ConsoleDriver::waitForEnd(DWORD milliseconds) {
    return WaitForSingleObject(process_, milliseconds) == WAIT_OBJECT_0;
}

DWORD ConsoleDriver::exitCode() const {
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process_, &code);
    return code;
}

void ConsoleDriver::kill() {
    if (!isRunning()) return;
    TerminateProcess(process_, 99);
    waitForEnd();
}

bool ConsoleDriver::waitUntil(const std::function<bool()>& condition, DWORD milliseconds) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start >= milliseconds) return false;
        Sleep(kPollPause);
    }
    return true;
}

HWND ConsoleDriver::findWindowWith(unsigned controlId) const {
    return findWindow(processId_,
                      [controlId](HWND window) { return GetDlgItem(window, static_cast<int>(controlId)) != nullptr; });
}

HWND ConsoleDriver::findMessageBox() const {
    return findWindow(processId_, [](HWND window) {
        return GetDlgItem(window, kMessageTextId) != nullptr &&
               (GetDlgItem(window, IDOK) != nullptr || GetDlgItem(window, IDYES) != nullptr);
    });
}

HWND ConsoleDriver::waitForWindowWith(unsigned controlId, DWORD milliseconds) {
    HWND window = nullptr;
    waitUntil([&] { return (window = findWindowWith(controlId)) != nullptr || !isRunning(); }, milliseconds);
    return window;
}

HWND ConsoleDriver::waitForMessageBox(DWORD milliseconds) {
    HWND window = nullptr;
    waitUntil([&] { return (window = findMessageBox()) != nullptr || !isRunning(); }, milliseconds);
    return window;
}

bool ConsoleDriver::waitUntilGone(HWND window, DWORD milliseconds) {
    return waitUntil([window] { return !IsWindow(window) || !IsWindowVisible(window); }, milliseconds);
}

HWND ConsoleDriver::mainWindow(DWORD milliseconds) {
    return waitForWindowWith(IDC_EVENT_LIST, milliseconds);
}

HWND ConsoleDriver::logonDialog(DWORD milliseconds) {
    return waitForWindowWith(IDC_LOGON_ID, milliseconds);
}

std::string ConsoleDriver::textOf(HWND window) {
    char text[4096] = "";
    SendMessageA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

std::string ConsoleDriver::textOf(HWND dialog, unsigned controlId) {
    const HWND control = GetDlgItem(dialog, static_cast<int>(controlId));
    std::string text = textOf(control);
    char className[16] = "";
    GetClassNameA(control, className, sizeof className);
    if (lstrcmpiA(className, "Button") == 0) std::erase(text, '&');
    return text;
}

std::string ConsoleDriver::messageText(HWND messageBox) {
    return textOf(messageBox, kMessageTextId);
}

void ConsoleDriver::type(HWND dialog, unsigned controlId, const std::string& text) {
    const HWND control = GetDlgItem(dialog, static_cast<int>(controlId));
    SendMessageA(control, EM_SETSEL, 0, -1);
    SendMessageA(control, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

void ConsoleDriver::click(HWND dialog, unsigned controlId) {
    PostMessageA(GetDlgItem(dialog, static_cast<int>(controlId)), BM_CLICK, 0, 0);
}

void ConsoleDriver::clickRow(HWND dialog, unsigned listId, int row) {
    clickItem(GetDlgItem(dialog, static_cast<int>(listId)), LVM_GETITEMRECT, row, false);
}

void ConsoleDriver::doubleClickRow(HWND dialog, unsigned listId, int row) {
    clickItem(GetDlgItem(dialog, static_cast<int>(listId)), LVM_GETITEMRECT, row, true);
}

void ConsoleDriver::clickTab(HWND dialog, unsigned tabsId, int tab) {
    const HWND tabs = GetDlgItem(dialog, static_cast<int>(tabsId));
    clickItem(tabs, TCM_GETITEMRECT, tab, false);
    // What is sent after this overtakes a click that still waits.
    waitUntil([&] { return SendMessageA(tabs, TCM_GETCURSEL, 0, 0) == tab; }, kAnswerPatience);
}

// `message` asks the control for the item's rectangle.
void ConsoleDriver::clickItem(HWND control, UINT message, int item, bool twice) {
    RemoteMemory memory(process_, kStructRoom);
    RECT area{};
    area.left = LVIR_LABEL;
    memory.write(area);
    if (SendMessageA(control, message, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(memory.at(0))) == 0) return;
    area = memory.read<RECT>();
    const LPARAM at = MAKELPARAM(area.left + 8, (area.top + area.bottom) / 2);
    PostMessageA(control, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(control, WM_LBUTTONUP, 0, at);
    if (!twice) return;
    PostMessageA(control, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    PostMessageA(control, WM_LBUTTONUP, 0, at);
}

bool ConsoleDriver::chooseEntry(HWND dialog, unsigned listId, const std::string& text) {
    const HWND list = GetDlgItem(dialog, static_cast<int>(listId));
    const LRESULT entry =
        SendMessageA(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
    if (entry == CB_ERR || !IsWindowEnabled(list)) return false;
    SendMessageA(list, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
    // Waits for what the choice does, but not for a message box that answers it.
    DWORD_PTR result = 0;
    SendMessageTimeoutA(dialog, WM_COMMAND, MAKEWPARAM(listId, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list),
                        SMTO_NORMAL, kAnswerPatience, &result);
    return true;
}

std::string ConsoleDriver::selectedEntry(HWND dialog, unsigned listId) {
    // The text, because a list's entries cannot be read from another process.
    return textOf(dialog, listId);
}

bool ConsoleDriver::isEnabled(HWND dialog, unsigned controlId) {
    return IsWindowEnabled(GetDlgItem(dialog, static_cast<int>(controlId))) != 0;
}

void ConsoleDriver::choose(unsigned command) {
    PostMessageA(mainWindow(), WM_COMMAND, command, 0);
}

HWND ConsoleDriver::open(unsigned command, unsigned controlId) {
    HWND window = nullptr;
    // What comes while the window is open already is ignored.
    waitUntil([&] {
        choose(command);
        return (window = waitForWindowWith(controlId, kAnswerPatience)) != nullptr || !isRunning();
    });
    return window;
}

HWND ConsoleDriver::openMessageBox(unsigned command) {
    HWND box = nullptr;
    waitUntil([&] {
        choose(command);
        return (box = waitForMessageBox(kAnswerPatience)) != nullptr || !isRunning();
    });
    return box;
}

void ConsoleDriver::enterLogon(const std::string& logonId, const std::string& password, const std::string& address) {
    const HWND dialog = logonDialog();
    type(dialog, IDC_LOGON_ID, logonId);
    type(dialog, IDC_LOGON_PASSWORD, password);
    type(dialog, IDC_LOGON_ADDRESS, address);
    click(dialog, IDOK);
}

bool ConsoleDriver::logOn(std::size_t rows) {
    if (logonDialog() == nullptr) return false;
    enterLogon("admin", "admin");
    return waitUntil([&] { return eventCount() == rows; });
}

HWND ConsoleDriver::eventList() {
    return GetDlgItem(mainWindow(), IDC_EVENT_LIST);
}

std::size_t ConsoleDriver::eventCount() {
    return static_cast<std::size_t>(SendMessageA(eventList(), LVM_GETITEMCOUNT, 0, 0));
}

int ConsoleDriver::selectedRow() {
    return static_cast<int>(SendMessageA(eventList(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

std::string ConsoleDriver::readCell(HWND list, int row, int column) {
    RemoteMemory memory(process_, kStructRoom + kTextRoom);
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = memory.at(kStructRoom);
    item.cchTextMax = kTextRoom;
    memory.write(item);
    SendMessageA(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory.at(0)));
    return memory.readText(kStructRoom, kTextRoom);
}

std::vector<std::vector<std::string>> ConsoleDriver::readRows(HWND dialog, unsigned listId, int columns) {
    const HWND list = GetDlgItem(dialog, static_cast<int>(listId));
    std::vector<std::vector<std::string>> rows(static_cast<std::size_t>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0)));
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (int column = 0; column < columns; ++column)
            rows[row].push_back(readCell(list, static_cast<int>(row), column));
    return rows;
}

std::vector<EventRow> ConsoleDriver::readEvents() {
    std::vector<EventRow> rows(eventCount());
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t column = 0; column < rows[row].size(); ++column)
            rows[row][column] = readCell(eventList(), static_cast<int>(row), static_cast<int>(column));
    return rows;
}

EventRow ConsoleDriver::columnTitles() {
    EventRow titles;
    for (std::size_t column = 0; column < titles.size(); ++column) {
        RemoteMemory memory(process_, kStructRoom + kTextRoom);
        LVCOLUMNA request{};
        request.mask = LVCF_TEXT;
        request.pszText = memory.at(kStructRoom);
        request.cchTextMax = kTextRoom;
        memory.write(request);
        SendMessageA(eventList(), LVM_GETCOLUMNA, column, reinterpret_cast<LPARAM>(memory.at(0)));
        titles[column] = memory.readText(kStructRoom, kTextRoom);
    }
    return titles;
}

int ConsoleDriver::columnWidth(int column) {
    return static_cast<int>(SendMessageA(eventList(), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

void ConsoleDriver::selectRow(int row) {
    setRowState(-1, LVIS_SELECTED | LVIS_FOCUSED, 0);
    selectAlso(row);
}

void ConsoleDriver::selectAlso(int row) {
    setRowState(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

// -1 stands for every row.
void ConsoleDriver::setRowState(int row, unsigned mask, unsigned state) {
    RemoteMemory memory(process_, kStructRoom);
    LVITEMA item{};
    item.stateMask = mask;
    item.state = state;
    memory.write(item);
    SendMessageA(eventList(), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory.at(0)));
}

int ConsoleDriver::rowOf(const std::string& name) {
    const auto count = static_cast<int>(eventCount());
    for (int row = 0; row < count; ++row)
        if (readCell(eventList(), row, 0) == name) return row;
    return -1;
}

std::vector<std::string> ConsoleDriver::statusTexts() {
    const HWND bar = GetDlgItem(mainWindow(), IDC_STATUS_BAR);
    const RemoteMemory memory(process_, kTextRoom);
    std::vector<std::string> texts(static_cast<std::size_t>(SendMessageA(bar, SB_GETPARTS, 0, 0)));
    for (std::size_t part = 0; part < texts.size(); ++part) {
        SendMessageA(bar, SB_GETTEXTA, part, reinterpret_cast<LPARAM>(memory.at(0)));
        texts[part] = memory.readText(0, kTextRoom);
    }
    return texts;
}

}  // namespace orvc::driver
