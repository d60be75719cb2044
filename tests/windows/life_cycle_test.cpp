// Logons, loads, reloads, stops and logoffs one after the other, with faults of the server and editors at random
// moments.
#include <windows.h>

#include <psapi.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

BOOL CALLBACK count(HWND, LPARAM sum) {
    ++*reinterpret_cast<DWORD*>(sum);
    return TRUE;
}

BOOL CALLBACK countTree(HWND window, LPARAM sum) {
    EnumChildWindows(window, count, sum);
    return count(window, sum);
}

class LifeCycleTest : public ConsoleTest {
  protected:
    void SetUp() override {
        ConsoleTest::SetUp();
        setText("UserName", "admin");
        setText("UserPassword", "admin");
        setText("IPAddress", "127.0.0.1");
        const char* const given = std::getenv("ORVC_SEED");
        seed_ = given != nullptr ? std::strtoul(given, nullptr, 10) : std::random_device()();
        random_.seed(static_cast<std::mt19937::result_type>(seed_));
        std::cout << "ORVC_SEED=" << seed_ << std::endl;
        startConsole("faults=" + std::to_string(seed_));
        main_ = console_.mainWindow();
        ASSERT_NE(main_, nullptr);
    }
    bool oneIn(unsigned chances) { return random_() % chances == 0; }

    // Logons until now, as the server's trace tells.
    int logons() {
        std::ifstream trace(traceFile(), std::ios::binary);
        trace.seekg(tracePosition_);
        for (std::string line; std::getline(trace, line) && !trace.eof(); tracePosition_ = trace.tellg())
            logons_ += line.starts_with("KSStart");
        return logons_;
    }
    // A timer's tick before its time: a cycle shall not take seconds.
    static void tick(HWND window, UINT_PTR timer) { PostMessageA(window, WM_TIMER, timer, 0); }
    // One moment in the life of the console.
    void step() {
        tick(main_, 1);
        tick(main_, 5);
        const HWND logon = console_.findWindowWith(IDC_LOGON_ID);
        if (logon != nullptr && IsWindowEnabled(logon)) {
            for (int i = 0; i < 10; ++i)
                tick(logon, 1);
            if (ConsoleDriver::isEnabled(logon, IDOK)) ConsoleDriver::click(logon, IDOK);
        } else if (logon != nullptr || oneIn(4)) {
            closeSomething();
        } else if (!settling_ && IsWindowEnabled(main_) && oneIn(4)) {
            openSomething();
        }
        Sleep(random_() % 20);
    }
    void openSomething() {
        constexpr unsigned kCommands[] = {IDM_MODIFY_EVENT, IDM_MODIFY_EVENT, IDM_CREATE_EVENT, IDM_DELETE_EVENT,
                                          IDM_PREFERENCES,  IDM_SCHEDULES,    IDM_ABOUT,        IDM_CLEAR_FILE};
        if (const std::size_t count = console_.eventCount(); count > 0)
            console_.selectRow(static_cast<int>(random_() % count));
        console_.choose(oneIn(12) ? IDM_LOGOFF : kCommands[random_() % std::size(kCommands)]);
    }
    // Closes the window that is on top; an editor is saved now and then.
    void closeSomething() {
        if (const HWND box = console_.findMessageBox(); box != nullptr && IsWindowEnabled(box))
            return ConsoleDriver::click(box, GetDlgItem(box, IDNO) != nullptr ? IDNO : IDOK);
        for (const unsigned id : {IDC_SCHEDULE_LIST, IDC_ABOUT_LIST, IDC_PREFERENCES_TABS, IDC_EVENT_NAME}) {
            const HWND dialog = console_.findWindowWith(id);
            if (dialog == nullptr || !IsWindowEnabled(dialog)) continue;
            const bool saves = id == IDC_EVENT_NAME && oneIn(3) && ConsoleDriver::isEnabled(dialog, IDOK);
            PostMessageA(dialog, WM_COMMAND, saves ? IDOK : IDCANCEL, 0);
            return;
        }
    }
    void live(int cycles) {
        const int end = logons() + cycles;
        const DWORD start = GetTickCount();
        while (logons() < end && console_.isRunning() && !HasFailure()) {
            step();
            ASSERT_LT(GetTickCount() - start, 60'000u + 2'000u * static_cast<unsigned>(cycles)) << "it stands still";
        }
        ASSERT_TRUE(console_.isRunning()) << "it ended with " << console_.exitCode();
    }
    // Logs off and waits until nothing but the logon dialog is left.
    void settle() {
        settling_ = true;
        const auto isQuiet = [&] {
            const HWND logon = console_.findWindowWith(IDC_LOGON_ID);
            // What is open below the logon dialog can be closed when somebody is logged on.
            const bool isLast = GetWindow(logon, GW_OWNER) == main_;
            if (logon != nullptr && isLast && ConsoleDriver::textOf(logon) == "Logon Required") return true;
            step();
            if (IsWindowEnabled(main_)) console_.choose(IDM_LOGOFF);
            return false;
        };
        ASSERT_TRUE(ConsoleDriver::waitUntil(isQuiet, 60'000));
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.findWindowWith(IDC_WAIT_TEXT) == nullptr; }, 3000))
            << "the please-wait window stays";
        EXPECT_EQ(console_.eventCount(), 0u);
        settling_ = false;
    }
    // What the console's process holds, and how much more is no leak.
    struct Holding {
        const char* what;
        DWORD count;
        DWORD slack;
    };
    std::array<Holding, 5> measure() {
        const HANDLE process = console_.process();
        DWORD handles = 0;
        GetProcessHandleCount(process, &handles);
        PROCESS_MEMORY_COUNTERS_EX memory{};
        GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
        DWORD windows = 0;
        EnumThreadWindows(GetWindowThreadProcessId(main_, nullptr), countTree, reinterpret_cast<LPARAM>(&windows));
        return {{{"handles", handles, 2},
                 {"GDI objects", GetGuiResources(process, GR_GDIOBJECTS), 2},
                 {"user objects", GetGuiResources(process, GR_USEROBJECTS), 2},
                 {"windows", windows, 0},
                 {"KiB", static_cast<DWORD>(memory.PrivateUsage / 1024), 512}}};
    }
    void endConsole() {
        ConsoleDriver::click(console_.logonDialog(), IDCANCEL);
        ASSERT_TRUE(console_.waitForEnd());
        EXPECT_EQ(console_.exitCode(), 0u);
    }

    HWND main_ = nullptr;
    unsigned long seed_ = 0;
    std::mt19937 random_;
    std::streamoff tracePosition_ = 0;
    int logons_ = 0;
    bool settling_ = false;  // nothing is opened
};

TEST_F(LifeCycleTest, EndsInOrderAfterAFewCycles) {
    live(10);
    settle();
    endConsole();
}

TEST_F(LifeCycleTest, LongLifeLeavesNothingBehind) {
    live(100);
    settle();
    const auto before = measure();
    live(500);
    settle();
    const auto after = measure();
    for (std::size_t i = 0; i < after.size(); ++i) {
        std::cout << after[i].count << " " << after[i].what << ", before " << before[i].count << std::endl;
        EXPECT_LE(after[i].count, before[i].count + before[i].slack) << after[i].what;
    }
    endConsole();
}

}  // namespace
}  // namespace orvc::test
