// The library as the console meets it: loaded, bound by name, called back on a thread of its own.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstring>
#include <string>

#include "link/ks_types.h"

namespace orvc {
namespace {

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) return 42;
    return DefWindowProcA(window, message, wParam, lParam);
}

// The callback has no object pointer, so there is one of these.
HWND window = nullptr;
std::atomic<int> events = 0, answered = 0;
std::atomic<bool> isWaiting = false;

void KS_CALL onEvent(std::uint32_t code, std::int32_t, const void*, const void*) {
    ++events;
    if (code != event_code::kNewConnection) return;
    isWaiting = true;
    Sleep(20);
    if (SendMessageA(window, WM_APP, 0, 0) == 42) ++answered;
}

// A callback that waits for the calling thread's window, as the console's does for every new connection.
TEST(DemoLibrary, ClosesWhileACallbackWaitsForTheCaller) {
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    const std::string file = std::string(folder) + "demo-server-test.txt";
    SetEnvironmentVariableA("ORVC_DEMO", ("fire=0;file=" + file).c_str());
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.lpszClassName = "DemoLibraryTest";
    RegisterClassA(&windowClass);
    window = CreateWindowA("DemoLibraryTest", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window);

    const HMODULE library = LoadLibraryA("KSPassThru.dll");
    std::int32_t(KS_CALL * open)(std::uint32_t*, std::uint32_t*, KSEventCallback, std::uint32_t*);
    std::int32_t(KS_CALL * start)(std::uint32_t, const KSSocketAddress*, std::uint32_t, const char*, const char*,
                                  std::uint32_t*, std::uint32_t*);
    std::int32_t(KS_CALL * close)(std::uint32_t);
    open = reinterpret_cast<decltype(open)>(GetProcAddress(library, "KSOpen"));
    start = reinterpret_cast<decltype(start)>(GetProcAddress(library, "KSStart"));
    close = reinterpret_cast<decltype(close)>(GetProcAddress(library, "KSClose"));
    ASSERT_TRUE(open && start && close);
    std::uint32_t handle = 0, flags = 16, word = 0, isAdmin = 0;
    ASSERT_EQ(open(&handle, &flags, onEvent, &word), 0);
    KSSocketAddress address;
    std::memcpy(&address.address, "\x7F\0\0\1", 4);
    ASSERT_EQ(start(handle, &address, 0, "admin", "admin", &word, &isAdmin), 0);
    while (!isWaiting)
        Sleep(1);
    EXPECT_EQ(close(handle), 0);
    const int eventsAtClose = events;
    EXPECT_EQ(answered, 1) << "the callback under way was let finish, and was the last";
    Sleep(50);
    EXPECT_EQ(events, eventsAtClose);
    FreeLibrary(library);
    DestroyWindow(window);
    DeleteFileA(file.c_str());
}

}  // namespace
}  // namespace orvc
