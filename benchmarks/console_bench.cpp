// console_bench: the real console's main window and the demo server, in this process so that it can be watched closely.
//
//   load EVENTS    from the subscription to the last row, and how late a timer of the window comes meanwhile
//   bare EVENTS    the same notifications through a bare queue, and a row for each Event in a bare list
//   editor PLACES  from the command to the open Event editor, and a bare dialog with the same controls and lists
#include <atomic>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>

#include "bench.h"
#include "console/application.h"
#include "link/ks_library.h"
#include "resources/resource.h"
#include "windows_bench.h"

namespace orvc::bench {
namespace {

constexpr DWORD kPatience = 60'000;
constexpr UINT_PTR kWatchTimer = 77;
constexpr UINT kWatchPeriod = 10;
constexpr UINT kStartTimer = WM_APP + 1;  // sent to the list: a timer belongs to the thread that asks for it
constexpr int kEditorRuns = 3;

const DWORD mainThread = GetCurrentThreadId();

[[noreturn]] void giveUp(const char* what) {
    std::fprintf(stderr, "console_bench: %s\n", what);
    std::fflush(stdout);
    std::_Exit(EXIT_FAILURE);
}

BOOL CALLBACK examineWindow(HWND window, LPARAM parameter) {
    auto& [control, found] = *reinterpret_cast<std::pair<int, HWND>*>(parameter);
    if (IsWindowVisible(window) && GetDlgItem(window, control) != nullptr) found = window;
    return found == nullptr;
}

// A visible window of the console with a control of that id.
HWND findWindowWith(int id) {
    std::pair<int, HWND> search{id, nullptr};
    EnumThreadWindows(mainThread, examineWindow, reinterpret_cast<LPARAM>(&search));
    return search.second;
}

HWND waitForWindowWith(int id) {
    HWND window = nullptr;
    if (!waitUntil([&] { return (window = findWindowWith(id)) != nullptr; }, kPatience)) giveUp("no window came");
    return window;
}

// What the Event list is told, on the console's thread.
struct ListWatch {
    WNDPROC original = nullptr;
    WPARAM awaitedRows = 0;
    std::atomic<bool> allThere = false;
    StopClock::time_point allThereAt;
    std::mutex mutex;
    std::vector<StopClock::time_point> ticks;
};
ListWatch watch;

void CALLBACK onTick(HWND, UINT, UINT_PTR, DWORD) {
    const std::lock_guard lock(watch.mutex);
    watch.ticks.push_back(StopClock::now());
}

LRESULT CALLBACK listProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kStartTimer) SetTimer(list, kWatchTimer, kWatchPeriod, onTick);
    const LRESULT result = CallWindowProcA(watch.original, list, message, wParam, lParam);
    if (message == LVM_SETITEMCOUNT && wParam == watch.awaitedRows && !watch.allThere) {
        watch.allThereAt = StopClock::now();
        watch.allThere = true;
    }
    return result;
}

// Seconds between the two ticks that lie farthest apart.
double longestGap(StopClock::time_point from, StopClock::time_point to) {
    const std::lock_guard lock(watch.mutex);
    double longest = 0;
    for (std::size_t i = 1; i < watch.ticks.size(); ++i)
        if (watch.ticks[i] > from && watch.ticks[i - 1] < to)
            longest = std::max(longest, std::chrono::duration<double>(watch.ticks[i] - watch.ticks[i - 1]).count());
    return longest;
}

std::string tracePath() {
    char folder[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    return std::string(folder) + "console_bench_trace.txt";
}

// The demo server adds a line to the trace before it carries a call out. Only the file's end is read.
bool hasSubscribed() {
    std::ifstream file(tracePath(), std::ios::binary | std::ios::ate);
    if (!file) return false;
    const std::streamoff size = file.tellg();
    file.seekg(std::max<std::streamoff>(0, size - 200));
    const std::string end(std::istreambuf_iterator<char>(file), {});
    return end.find("KSSysVarSubscribe") != std::string::npos;
}

void setDemo(const std::string& options) {
    SetEnvironmentVariableA("ORVC_DEMO", ("fire=0;" + options).c_str());
}

// Runs the console, logged on by itself, and `watcher` beside it on another thread. Waits for `rows` rows.
template <typename Watcher>
void runConsoleWith(WPARAM rows, const Watcher& watcher) {
    for (const auto& [name, value] :
         {std::pair{"UserName", "admin"}, {"UserPassword", "admin"}, {"IPAddress", "127.0.0.1"}})
        RegSetKeyValueA(HKEY_CURRENT_USER, "Software\\Kestrel Sonics\\ORVSConfig\\settings", name, REG_SZ, value,
                        static_cast<DWORD>(std::string_view(value).size() + 1));
    watch.awaitedRows = rows;
    std::thread beside([&] {
        const HWND window = waitForWindowWith(IDC_EVENT_LIST);
        const HWND list = GetDlgItem(window, IDC_EVENT_LIST);
        watch.original =
            reinterpret_cast<WNDPROC>(SetWindowLongPtrA(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(listProcedure)));
        watcher(window, list);
        PostMessageA(window, WM_COMMAND, IDM_EXIT, 0);
    });
    runConsole();
    beside.join();
}

void load(const std::string& events) {
    DeleteFileA(tracePath().c_str());
    setDemo("events=" + events + ";trace=" + tracePath());
    runConsoleWith(static_cast<WPARAM>(std::stoul(events)), [&](HWND, HWND list) {
        SendMessageA(list, kStartTimer, 0, 0);
        if (!waitUntil(hasSubscribed, kPatience)) giveUp("the console did not subscribe");
        const auto start = StopClock::now();
        if (!waitUntil([] { return watch.allThere.load(); }, kPatience, 20)) giveUp("the rows did not come");
        const auto end = watch.allThereAt;
        report(("load.console." + events).c_str(), std::chrono::duration<double>(end - start).count());
        Sleep(500);
        const auto idleFrom = StopClock::now();
        Sleep(2000);
        if (events != "50000") return;
        report("timer.loading", longestGap(start, end));
        report("timer.idle", longestGap(idleFrom, StopClock::now()));
    });
}

// One notification as the bare program keeps it.
struct BareBlock {
    std::string name;
    std::string text;
    std::uint32_t number;
};
std::mutex bareMutex;
std::deque<BareBlock> bareQueue;
std::atomic<bool> initialised = false;

void KS_CALL takeNotification(std::uint32_t code, std::int32_t, const void*, const void* data) {
    if (code == event_code::kInitializationComplete) initialised = true;
    if (code != event_code::kVariable) return;
    const auto& variable = *static_cast<const KSVariableNotification*>(data);
    BareBlock block{variable.name, variable.text != nullptr ? variable.text : "", variable.number};
    const std::lock_guard lock(bareMutex);
    bareQueue.push_back(std::move(block));
}

void insertRow(HWND list, int row, std::string name) {
    LVITEMA item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = name.data();
    SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    char texts[][24] = {"Available", "Never", "Activate Relay"};
    for (int column = 1; column <= 3; ++column) {
        item.iSubItem = column;
        item.pszText = texts[column - 1];
        SendMessageA(list, LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
}

void bare(const std::string& events) {
    setDemo("events=" + events);
    const int rows = std::stoi(events);
    const HMODULE library = LoadLibraryA("KSPassThru.dll");
    KSLibrary ks;
    bindEntryPoints(ks, [&](const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); });
    std::uint32_t handle = 0, flags = 16, word = 0, admin = 0;
    ks.KSOpen(&handle, &flags, takeNotification, &word);
    const KSSocketAddress address{2, 0xA00F, 0x0100007F, {}};  // 127.0.0.1:4000 in the network's byte order
    if (ks.KSStart(handle, &address, 0, "admin", "admin", &word, &admin) != 0) giveUp("no logon");
    const HWND window = makeWindow("STATIC", WS_OVERLAPPEDWINDOW, nullptr, 0, 400);
    const HWND list = makeEventList(window, IDC_EVENT_LIST);
    if (!waitUntil([] { return initialised.load(); }, kPatience)) giveUp("no initialisation");
    const double seconds = measure([&] {
        SendMessageA(list, WM_SETREDRAW, FALSE, 0);
        ks.KSSysVarSubscribe(handle, "\\ORVS\\", 0, 1);
        int row = 0;
        std::deque<BareBlock> taken;
        while (row < rows) {
            {
                const std::lock_guard lock(bareMutex);
                taken.swap(bareQueue);
            }
            if (taken.empty()) Sleep(1);
            for (const BareBlock& block : taken)
                if (block.name.ends_with("\\EventName")) insertRow(list, row++, block.text);
            taken.clear();
        }
        SendMessageA(list, WM_SETREDRAW, TRUE, 0);
        UpdateWindow(list);
    });
    report(("load.bare." + events).c_str(), seconds);
    ks.KSStop(handle);
    ks.KSClose(handle);
    std::fflush(stdout);
    std::_Exit(EXIT_SUCCESS);
}

std::vector<std::string> textsOf(HWND dropDown) {
    std::vector<std::string> texts(static_cast<std::size_t>(SendMessageA(dropDown, CB_GETCOUNT, 0, 0)));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        char text[256] = "";
        SendMessageA(dropDown, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text));
        texts[i] = text;
    }
    return texts;
}

// A dialog of the editor's template, with the same two lists filled and nothing else done.
INT_PTR CALLBACK bareEditorProcedure(HWND dialog, UINT message, WPARAM, LPARAM texts) {
    if (message != WM_INITDIALOG) return FALSE;
    for (const int id : {IDC_EVENT_SOURCE, IDC_EVENT_DESTINATION}) {
        const HWND list = GetDlgItem(dialog, id);
        SendMessageA(list, WM_SETREDRAW, FALSE, 0);
        for (const std::string& text : *reinterpret_cast<const std::vector<std::string>*>(texts))
            SendMessageA(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
        SendMessageA(list, WM_SETREDRAW, TRUE, 0);
    }
    return TRUE;
}

double openBareEditor(const std::vector<std::string>& texts) {
    HWND dialog = nullptr;
    const double seconds = measure([&] {
        dialog = CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_SETUP_EVENT), nullptr,
                                    bareEditorProcedure, reinterpret_cast<LPARAM>(&texts));
        ShowWindow(dialog, SW_SHOW);
        UpdateWindow(dialog);
    });
    if (dialog == nullptr) giveUp("no bare editor");
    DestroyWindow(dialog);
    return seconds;
}

void editor(const std::string& places) {
    // The first Event has a source and a destination from these lists.
    setDemo("events=20;groups=1;devices=" + places);
    runConsoleWith(20, [&](HWND window, HWND list) {
        if (!waitUntil([] { return watch.allThere.load(); }, kPatience, 20)) giveUp("the rows did not come");
        const auto isEditable = [menu = GetMenu(window)] {
            return (GetMenuState(menu, IDM_CREATE_EVENT, MF_BYCOMMAND) & MF_GRAYED) == 0;
        };
        if (!waitUntil(isEditable, kPatience, 20)) giveUp("the Events cannot be edited");
        LVITEMA item{};
        item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageA(list, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&item));
        for (int run = 0; run < kEditorRuns; ++run) {
            HWND dialog = nullptr;
            const double seconds = measure([&] {
                // Answered once the editor, which opens within the command, handles messages.
                SendNotifyMessageA(window, WM_COMMAND, IDM_MODIFY_EVENT, 0);
                SendMessageA(window, WM_NULL, 0, 0);
                dialog = waitForWindowWith(IDC_EVENT_DESTINATION);
            });
            const std::vector<std::string> texts = textsOf(GetDlgItem(dialog, IDC_EVENT_DESTINATION));
            if (texts.size() < std::stoul(places) ||
                textsOf(GetDlgItem(dialog, IDC_EVENT_SOURCE)).size() != texts.size())
                giveUp("the editor's lists are not full");
            report(("editor.console." + places).c_str(), seconds);
            report(("editor.bare." + places).c_str(), openBareEditor(texts));
            PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
            if (!waitUntil([&] { return findWindowWith(IDC_EVENT_DESTINATION) == nullptr; }, kPatience))
                giveUp("the editor did not close");
            SendMessageA(window, WM_NULL, 0, 0);  // answered once all of it is gone
        }
    });
}

}  // namespace
}  // namespace orvc::bench

int main(int argc, char** argv) {
    using namespace orvc::bench;
    const std::string mode = argc == 3 ? argv[1] : "";
    if (mode == "load")
        load(argv[2]);
    else if (mode == "bare")
        bare(argv[2]);
    else if (mode == "editor")
        editor(argv[2]);
    else
        giveUp("load EVENTS, bare EVENTS or editor PLACES");
}
