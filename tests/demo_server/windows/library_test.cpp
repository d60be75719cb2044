// The library as the console meets it: loaded, bound by name, called back on a thread of its own.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "link/ks_entry_points.h"

namespace orvc {
namespace {

// The function table, bound as the console binds it.
struct Library {
#define ORVC_MEMBER(name, parameters) std::int32_t(KS_CALL* name) parameters = nullptr;
    ORVC_KS_ENTRY_POINTS(ORVC_MEMBER)
#undef ORVC_MEMBER
    HMODULE module = nullptr;

    explicit Library(const char* file) : module(LoadLibraryA(file)) {
#define ORVC_BIND(name, parameters) name = reinterpret_cast<decltype(name)>(GetProcAddress(module, #name));
        ORVC_KS_ENTRY_POINTS(ORVC_BIND)
#undef ORVC_BIND
    }
    ~Library() {
        FreeLibrary(module);
    }
};

// What the callback saw, in order. The callback has no object pointer, so there is one of it.
struct Seen {
    std::mutex lock;
    std::vector<std::uint32_t> codes;
    std::function<void(std::uint32_t)> then;  // runs in the callback, after the rest
};
Seen seen;

void KS_CALL onEvent(std::uint32_t code, std::int32_t, const void*, const void*) {
    {
        const std::lock_guard guard(seen.lock);
        seen.codes.push_back(code);
    }
    if (seen.then) seen.then(code);
}

bool waitUntil(const std::function<bool()>& condition) {
    for (int i = 0; i < 1000; ++i, Sleep(5)) {
        const std::lock_guard guard(seen.lock);
        if (condition()) return true;
    }
    return false;
}

class DemoLibrary : public ::testing::Test {
  protected:
    void SetUp() override {
        char folder[MAX_PATH];
        GetTempPathA(MAX_PATH, folder);
        file_ = std::string(folder) + "demo-server-test-" + std::to_string(GetCurrentProcessId()) + ".txt";
        SetEnvironmentVariableA("ORVC_DEMO", ("fire=0;file=" + file_).c_str());
        seen.codes.clear();
        seen.then = nullptr;
    }
    void TearDown() override { DeleteFileA(file_.c_str()); }

    static std::uint32_t open(Library& library) {
        std::uint32_t handle = 0;
        std::uint32_t out = 99;
        std::uint32_t flags = 16;
        EXPECT_EQ(library.KSOpen(&handle, &flags, onEvent, &out), 0);
        EXPECT_EQ(flags, 17u);
        EXPECT_EQ(out, 0u);
        return handle;
    }

    static std::int32_t logOn(Library& library, std::uint32_t handle) {
        KSSocketAddress address;
        std::memcpy(&address.address, "\x7F\0\0\1", 4);
        std::uint32_t out = 99;
        std::uint32_t admin = 99;
        return library.KSStart(handle, &address, 0, "admin", "admin", &out, &admin);
    }

    std::string file_;
};

TEST_F(DemoLibrary, LetsAUserLogOnOnceOnTheMachine) {
    Library first(ORVC_TEST_LIBRARY);
    Library second(ORVC_TEST_OTHER_LIBRARY);  // shares nothing with the first, like another process
    const std::uint32_t handle = open(first);
    const std::uint32_t otherHandle = open(second);
    EXPECT_EQ(logOn(first, handle), 0);
    EXPECT_EQ(logOn(second, otherHandle), logon_result::kAlreadyLoggedIn);
    first.KSStop(handle);
    EXPECT_EQ(logOn(second, otherHandle), 0);
    second.KSClose(otherHandle);
    EXPECT_EQ(logOn(first, handle), 0) << "closing lets the user go, too";
    first.KSClose(handle);
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) return 42;
    return DefWindowProcA(window, message, wParam, lParam);
}

// A callback that waits for the calling thread's window, as the console's does for every new connection.
TEST_F(DemoLibrary, ClosesWhileACallbackWaitsForTheCaller) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.lpszClassName = "DemoLibraryTest";
    RegisterClassA(&windowClass);
    HWND window = CreateWindowA("DemoLibraryTest", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window);
    Library library(ORVC_TEST_LIBRARY);
    std::atomic<int> answered{0};
    std::atomic<bool> waiting{false};
    seen.then = [&](std::uint32_t code) {
        if (code != event_code::kNewConnection) return;
        waiting = true;
        Sleep(20);
        if (SendMessageA(window, WM_APP, 0, 0) == 42) ++answered;
    };
    const std::uint32_t handle = open(library);
    ASSERT_EQ(logOn(library, handle), 0);
    while (!waiting)
        Sleep(1);
    EXPECT_EQ(library.KSClose(handle), 0);
    const std::size_t events = seen.codes.size();
    EXPECT_EQ(answered, 1) << "the callback under way was let finish, and was the last";
    Sleep(50);
    EXPECT_EQ(seen.codes.size(), events);
    DestroyWindow(window);
}

TEST_F(DemoLibrary, ClosesFromItsOwnCallback) {
    Library library(ORVC_TEST_LIBRARY);
    std::atomic<std::int32_t> result{99};
    std::uint32_t handle = 0;
    seen.then = [&](std::uint32_t code) {
        if (code == event_code::kServerTime) result = library.KSClose(handle);
    };
    handle = open(library);
    ASSERT_EQ(logOn(library, handle), 0);
    ASSERT_TRUE(waitUntil([&] { return result != 99; }));
    EXPECT_EQ(result, 0);
    Sleep(50);
    EXPECT_EQ(seen.codes.back(), event_code::kServerTime);
    const std::uint32_t again = open(library);
    EXPECT_EQ(library.KSClose(again), 0);
}

}  // namespace
}  // namespace orvc
