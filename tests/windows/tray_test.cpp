// The icon in the notification area and the window that hides behind it.
#include <windows.h>

#include <atomic>
#include <future>
#include <thread>

#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

// Stands in for the shell's taskbar, and takes icons or refuses them. It is found first because it lies on top.
class Taskbar {
  public:
    Taskbar() {
        std::promise<HWND> made;
        thread_ = std::thread([&made] { run(made); });
        window_ = made.get_future().get();
    }
    ~Taskbar() {
        PostMessageA(window_, WM_CLOSE, 0, 0);
        thread_.join();
    }
    Taskbar(const Taskbar&) = delete;
    Taskbar& operator=(const Taskbar&) = delete;

    void takeIcons(bool takes) { takesIcons = takes; }

  private:
    static LRESULT CALLBACK answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_COPYDATA) return takesIcons ? TRUE : FALSE;
        if (message == WM_DESTROY) PostQuitMessage(0);
        return DefWindowProcA(window, message, wParam, lParam);
    }
    static void run(std::promise<HWND>& made) {
        WNDCLASSA type{};
        type.lpfnWndProc = answer;
        type.lpszClassName = "Shell_TrayWnd";
        RegisterClassA(&type);
        made.set_value(CreateWindowExA(WS_EX_TOPMOST, type.lpszClassName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                       nullptr, nullptr));
        MSG message;
        while (GetMessageA(&message, nullptr, 0, 0) > 0)
            DispatchMessageA(&message);
        UnregisterClassA(type.lpszClassName, nullptr);
    }

    static inline std::atomic<bool> takesIcons = false;
    std::thread thread_;
    HWND window_ = nullptr;
};

class TrayTest : public ConsoleTest {
  protected:
    void minimize() {
        setInteger("hideMinimized", 1);
        startConsole();
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        window_ = console_.mainWindow();
        ShowWindow(window_, SW_MINIMIZE);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsIconic(window_) != 0; }));
        SendMessageA(window_, WM_NULL, 0, 0);
    }

    HWND window_ = nullptr;
};

TEST_F(TrayTest, TheIconBringsTheWindowBackAndForgedMessagesDoNothing) {
    minimize();
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(window_) == 0; }));
    PostMessageA(window_, 0x1400, 0x1400, WM_LBUTTONUP);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(window_) != 0 && IsIconic(window_) == 0; }));
    for (UINT message = 0x1401; message <= 0x1410; ++message) {
        PostMessageA(window_, message, 1, 0x1234);
        SendMessageA(window_, message, 1, 0x1234);
    }
    EXPECT_EQ(console_.eventCount(), kBuildingEvents);
    EXPECT_TRUE(console_.isRunning());
    exitConsole();
}

TEST_F(TrayTest, TheWindowHidesOnlyBehindAnIconThatTheTaskbarHas) {
    Taskbar taskbar;
    taskbar.takeIcons(false);
    minimize();
    EXPECT_TRUE(IsWindowVisible(window_)) << "nothing would bring it back";
    const UINT created = RegisterWindowMessageA("TaskbarCreated");
    for (const bool takes : {true, false, true}) {
        taskbar.takeIcons(takes);
        SendMessageA(window_, created, 0, 0);
        EXPECT_EQ(IsWindowVisible(window_) == 0, takes);
    }
    PostMessageA(window_, WM_COMMAND, IDM_EXIT, 0);
    EXPECT_TRUE(console_.waitForEnd());
}

}  // namespace
}  // namespace orvc::test
