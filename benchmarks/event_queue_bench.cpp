// event_queue_bench: notifications a second from another thread to a window, through the console's event queue and as
// one posted message each.
#include <cstdlib>
#include <thread>

#include "bench.h"
#include "link/event_queue.h"
#include "sample_events.h"
#include "ui/message_loop.h"
#include "win32/window_poster.h"
#include "windows_bench.h"

namespace orvc::bench {
namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerPeriod = 10;

// The notifications of one Event over and over: what is told does not matter here.
class Sender {
  public:
    Sender() {
        makeSampleEvent(1, [this](const SampleVariable& variable) { variables_.push_back(variable); });
    }
    template <typename Give>
    void send(int count, const Give& give) const {
        for (int i = 0; i < count; ++i) {
            const SampleVariable& v = variables_[static_cast<std::size_t>(i) % variables_.size()];
            give(VariableEvent::make({v.name.c_str(), v.type, v.text ? v.text->c_str() : nullptr, v.number}));
        }
    }

  private:
    std::vector<SampleVariable> variables_;
};

int received = 0;
std::function<void()> deliver;

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) {
        const std::unique_ptr<QueuedEvent> block(reinterpret_cast<QueuedEvent*>(lParam));
        ++received;
        return 0;
    }
    if (message == WM_TIMER || private_message::isQueued(message)) {
        deliver();
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// Seconds until the window has received `count` notifications that `give` takes on another thread.
template <typename Give>
double receiveAll(int count, const Give& give) {
    const Sender sender;
    received = 0;
    return measure([&] {
        std::thread library([&] { sender.send(count, give); });
        ui::runMessageLoop([&] { return received == count; }, [](MSG&) { return false; });
        library.join();
    });
}

double eventQueue(HWND window, int count) {
    win32::MainWindowPoster poster(kTimer, kTimerPeriod);
    poster.setWindow(window);
    EventQueue eventQueue(poster, [=](std::unique_ptr<QueuedEvent>) {
        // Something for the message loop to find when all are there.
        if (++received == count) PostMessageA(window, WM_NULL, 0, 0);
    });
    // As the main window does it.
    deliver = [&] {
        if (eventQueue.drain())
            KillTimer(window, kTimer);
        else
            SetTimer(window, kTimer, kTimerPeriod, nullptr);
    };
    ui::setIdleWork([&] {
        if (!eventQueue.isPending()) return false;
        deliver();
        return eventQueue.isPending();
    });
    const double seconds = receiveAll(count, [&](auto block) { eventQueue.put(std::move(block)); });
    ui::setIdleWork(nullptr);
    KillTimer(window, kTimer);
    return seconds;
}

double postEach(HWND window, int count) {
    return receiveAll(count, [&](std::unique_ptr<QueuedEvent> block) {
        // Windows, unlike Wine, lets no more than 10,000 wait.
        while (!PostMessageA(window, WM_APP, 0, reinterpret_cast<LPARAM>(block.get())))
            Sleep(1);
        block.release();
    });
}

int run() {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.lpszClassName = "Benchmark";
    RegisterClassA(&windowClass);
    const HWND window = makeWindow("Benchmark", WS_OVERLAPPEDWINDOW, nullptr, 0, 400);
    if (window == nullptr) return EXIT_FAILURE;
    constexpr int kFew = 20'000;
    constexpr int kMany = 1'000'000;
    report("handover.posted.20k", kFew / postEach(window, kFew));
    // Fifty times as many make a time that can be told from a blink.
    double seconds = 0;
    for (int i = 0; i < 50; ++i)
        seconds += eventQueue(window, kFew);
    report("handover.ours.20k", 50 * kFew / seconds);
    report("handover.ours.1m", kMany / eventQueue(window, kMany));
    DestroyWindow(window);
    return 0;
}

}  // namespace
}  // namespace orvc::bench

int main() {
    return orvc::bench::run();
}
