// The flood of tests/core/link, through a window and messages of Windows' own.
#include "support/flood.h"

#include <windows.h>

#include "tour/holdings.h"
#include "win32/window_poster.h"

namespace orvc::test {
namespace {

constexpr UINT_PTR kTimer = 8;

struct SilentLog final : LogSystem {
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    bool emptyFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}
};

// The main window's poster, whose window counts as full now and then.
class RefusingPoster final : public WindowPoster {
  public:
    explicit RefusingPoster(HWND window) : poster_(kTimer, 10) { poster_.setWindow(window); }
    bool post(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) override {
        return ++posts_ % 3 != 0 && poster_.post(message, wParam, lParam);
    }
    bool send(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) override {
        return poster_.send(message, wParam, lParam);
    }
    void requestTimer() override { poster_.requestTimer(); }

  private:
    win32::MainWindowPoster poster_;
    int posts_ = 0;
};

TEST(FloodTest, AMillionNotificationsArriveInOrderInAWindow) {
    constexpr std::uint32_t kNotifications = 1'000'000;
    const HWND window = CreateWindowA("STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    SilentLog system;
    const SystemClock clock;
    TrackingLog log(system, clock);
    log.endStartUp();
    RefusingPoster poster(window);
    Flood* flood = nullptr;
    EventQueue eventQueue(poster, [&](const std::unique_ptr<QueuedEvent>& block) { flood->receive(*block); });
    Flood here(eventQueue, log, clock);
    flood = &here;
    std::size_t held = 0;
    for (const bool warmUp : {true, false}) {
        const std::uint32_t end = here.received() + kNotifications;
        here.start(kNotifications);
        MSG message;
        while (here.received() < end && GetMessageA(&message, nullptr, 0, 0) > 0) {
            const bool isOurs = message.hwnd == window && (private_message::isQueued(message.message) ||
                                                           (message.message == WM_TIMER && message.wParam == kTimer));
            if (isOurs && !eventQueue.drain()) poster.requestTimer();
        }
        here.join();
        EXPECT_EQ(here.received(), end);
        if (warmUp) held = driver::measure(GetCurrentProcess(), GetCurrentThreadId()).bytes;
    }
    EXPECT_LE(driver::measure(GetCurrentProcess(), GetCurrentThreadId()).bytes, held + 1024 * 1024);
    DestroyWindow(window);
}

}  // namespace
}  // namespace orvc::test
