// Logons, loads, reloads, stops and logoffs one after the other, with faults of the server and editors at random
// moments.
#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <random>

#include "tour/holdings.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using driver::Holdings;

BOOL CALLBACK tell(HWND window, LPARAM) {
    if (IsWindowVisible(window) != 0)
        std::cout << ConsoleDriver::textOf(window) << (IsWindowEnabled(window) ? "" : ", disabled") << std::endl;
    return TRUE;
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
            ++calls_[line.substr(0, line.find_first_of(" \r"))];
        return calls_["KSStart"];
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
    // Ends a logon that the server does not end. Once at a time: it takes a second.
    void logOffAfter(DWORD milliseconds) {
        const DWORD now = GetTickCount();
        const int before = std::exchange(lastLogon_, logons());
        if (before != lastLogon_) logonAt_ = now;
        if (now - logonAt_ < milliseconds || now - logoffAt_ < 2000 || !IsWindowEnabled(main_)) return;
        console_.choose(IDM_LOGOFF);
        logoffAt_ = now;
    }
    void openSomething() {
        constexpr unsigned kCommands[] = {IDM_MODIFY_EVENT, IDM_MODIFY_EVENT, IDM_CREATE_EVENT, IDM_DELETE_EVENT,
                                          IDM_PREFERENCES,  IDM_SCHEDULES,    IDM_ABOUT,        IDM_CLEAR_FILE};
        if (const std::size_t count = console_.eventCount(); count > 0)
            console_.selectRow(static_cast<int>(random_() % count));
        console_.choose(kCommands[random_() % std::size(kCommands)]);
    }
    // Closes the window that is on top; an editor is saved now and then. Returns whether there was one.
    bool closeSomething() {
        if (const HWND box = console_.findMessageBox(); box != nullptr && IsWindowEnabled(box)) {
            ConsoleDriver::click(box, GetDlgItem(box, IDNO) != nullptr ? IDNO : IDOK);
            return true;
        }
        for (const unsigned id : {IDC_SCHEDULE_LIST, IDC_ABOUT_LIST, IDC_PREFERENCES_TABS, IDC_EVENT_NAME}) {
            const HWND dialog = console_.findWindowWith(id);
            if (dialog == nullptr || !IsWindowEnabled(dialog)) continue;
            const bool saves = id == IDC_EVENT_NAME && oneIn(3) && ConsoleDriver::isEnabled(dialog, IDOK);
            PostMessageA(dialog, WM_COMMAND, saves ? IDOK : IDCANCEL, 0);
            return true;
        }
        return false;
    }
    void TearDown() override {
        if (HasFailure() && main_ != nullptr) EnumThreadWindows(GetWindowThreadProcessId(main_, nullptr), tell, 0);
        ConsoleTest::TearDown();
    }
    void live(int cycles) {
        const int end = logons() + cycles;
        const DWORD start = GetTickCount();
        while (logons() < end && console_.isRunning() && !HasFailure()) {
            step();
            logOffAfter(400);
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
            const auto rests = [&] {
                return GetWindow(logon, GW_OWNER) == main_ && ConsoleDriver::textOf(logon) == "Logon Required";
            };
            if (rests()) {
                Sleep(300);  // a click may still be on its way
                if (rests()) return true;
            }
            step();
            logOffAfter(0);
            return false;
        };
        ASSERT_TRUE(ConsoleDriver::waitUntil(isQuiet, 60'000));
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.findWindowWith(IDC_WAIT_TEXT) == nullptr; }, 3000))
            << "the please-wait window stays";
        EXPECT_EQ(console_.eventCount(), 0u);
        settling_ = false;
    }
    Holdings held() {
        const Holdings found = driver::measure(console_.process(), GetWindowThreadProcessId(main_, nullptr));
        std::cout << "after " << logons() << " logons, " << calls_["KSSysVarSubscribe"] << " loads, "
                  << calls_["KSResendSettings"] << " reloads, " << calls_["KSFileRead"]
                  << " payloads fetched: " << found << std::endl;
        return found;
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
    std::map<std::string, int> calls_;
    int lastLogon_ = 0;
    DWORD logonAt_ = 0;  // tick counts
    DWORD logoffAt_ = 0;
    bool settling_ = false;  // nothing is opened
};

TEST_F(LifeCycleTest, EndsInOrderAfterAFewCycles) {
    live(6);
    settle();
    endConsole();
}

TEST_F(LifeCycleTest, LongLifeLeavesNothingBehind) {
    live(100);
    settle();
    const Holdings before = held();
    live(500);
    settle();
    const Holdings after = held();
    EXPECT_GT(before.handles, 0u);
    EXPECT_GT(before.gdi, 0u);
    EXPECT_LE(after.handles, before.handles + 2);
    EXPECT_LE(after.gdi, before.gdi + 2);
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_LE(after.bytes, before.bytes + 500 * 1024) << "a KiB for each cycle would be a leak";
    endConsole();
}

}  // namespace
}  // namespace orvc::test
