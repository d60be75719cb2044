// The library as the console meets it: loaded, bound by name, called back on a thread of its own.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
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
    std::vector<std::string> missing;

    explicit Library(const char* file) : module(LoadLibraryA(file)) {
#define ORVC_BIND(name, parameters) bind(name, #name);
        ORVC_KS_ENTRY_POINTS(ORVC_BIND)
#undef ORVC_BIND
    }
    ~Library() {
        FreeLibrary(module);
    }

    template <typename Function>
    void bind(Function& function, const char* name) {
        function = reinterpret_cast<Function>(GetProcAddress(module, name));
        if (!function) missing.push_back(name);
    }
};

// What the callback saw, in order. The callback has no object pointer, so there is one of it.
struct Seen {
    std::mutex lock;
    std::vector<std::string> variables;  // name and value
    std::vector<std::uint32_t> codes;
    std::string file;
    std::function<void(std::uint32_t)> then;  // runs in the callback, after the rest

    void reset() {
        variables.clear();
        codes.clear();
        file.clear();
        then = nullptr;
    }
};
Seen seen;

void KS_CALL onEvent(std::uint32_t code, std::int32_t, const void*, const void* data) {
    {
        const std::lock_guard guard(seen.lock);
        if (code == event_code::kVariable) {
            const auto* variable = static_cast<const KSVariableNotification*>(data);
            const std::string name = variable->name;
            seen.variables.push_back(name + "=" + (variable->text ? variable->text : std::to_string(variable->number)));
        }
        if (code == event_code::kFileData) {
            const auto* piece = static_cast<const KSFileData*>(data);
            seen.file.append(static_cast<const char*>(piece->bytes), piece->byteCount);
            if (piece->byteCount != 0) return;  // only its end counts as an event
        }
        seen.codes.push_back(code);
    }
    if (seen.then) seen.then(code);
}

bool waitUntil(const std::function<bool()>& condition) {
    for (int i = 0; i < 1000; ++i) {
        {
            const std::lock_guard guard(seen.lock);
            if (condition()) return true;
        }
        Sleep(5);
    }
    return false;
}

bool waitForCode(std::uint32_t code) {
    return waitUntil([&] { return std::find(seen.codes.begin(), seen.codes.end(), code) != seen.codes.end(); });
}

bool waitForVariable(const std::string& line) {
    return waitUntil(
        [&] { return std::find(seen.variables.begin(), seen.variables.end(), line) != seen.variables.end(); });
}

std::string readAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class DemoLibrary : public ::testing::Test {
  protected:
    void SetUp() override {
        char folder[MAX_PATH];
        GetTempPathA(MAX_PATH, folder);
        const std::string base = std::string(folder) + "demo-server-test-" + std::to_string(GetCurrentProcessId());
        file_ = base + ".txt";
        trace_ = base + ".trace";
        removeFiles();
        seen.reset();
    }
    void TearDown() override { removeFiles(); }
    void removeFiles() const {
        DeleteFileA(file_.c_str());
        DeleteFileA(trace_.c_str());
    }

    void setOptions(const std::string& more) const {
        SetEnvironmentVariableA("ORVC_DEMO", ("fire=0;file=" + file_ + ";" + more).c_str());
    }

    std::uint32_t open(Library& library) {
        std::uint32_t handle = 0;
        std::uint32_t out = 99;
        flags_ = 16;
        EXPECT_EQ(library.KSOpen(&handle, &flags_, onEvent, &out), 0);
        EXPECT_NE(handle, 0u);
        EXPECT_EQ(out, 0u);
        return handle;
    }

    static std::int32_t logOn(Library& library, std::uint32_t handle) {
        KSSocketAddress address;
        const unsigned char bytes[] = {127, 0, 0, 1};
        std::memcpy(&address.address, bytes, sizeof bytes);
        std::uint32_t out = 99;
        std::uint32_t admin = 99;
        const std::int32_t result = library.KSStart(handle, &address, 0, "admin", "admin", &out, &admin);
        EXPECT_TRUE(result != 0 || admin == 1);
        return result;
    }

    static void setString(Library& library, std::uint32_t handle, const char* name, const std::string& text) {
        EXPECT_EQ(library.KSSysVarSetValue(handle, name, variable_type::kString, text.data(),
                                           static_cast<std::uint32_t>(text.size())),
                  0);
    }

    std::string file_, trace_;
    std::uint32_t flags_ = 0;
};

TEST_F(DemoLibrary, ExportsAllFiftyNamesAndTheOtherOneLacksOne) {
    setOptions("");
    const Library whole(ORVC_TEST_LIBRARY);
    ASSERT_TRUE(whole.module);
    EXPECT_TRUE(whole.missing.empty());
    EXPECT_EQ(whole.KSSayText(), 0);
    const Library incomplete(ORVC_TEST_INCOMPLETE_LIBRARY);
    ASSERT_TRUE(incomplete.module);
    EXPECT_EQ(incomplete.missing, std::vector<std::string>{"KSFileInfo"});
}

TEST_F(DemoLibrary, HasItsVersionInTheResource) {
    char bytes[4096];
    ASSERT_TRUE(GetFileVersionInfoA(ORVC_TEST_LIBRARY, 0, sizeof bytes, bytes));
    void* text = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(bytes, "\\StringFileInfo\\040904E4\\FileVersion", &text, &length));
    EXPECT_STREQ(static_cast<const char*>(text), "1.0.0.1");
}

TEST_F(DemoLibrary, ServesAWholeSessionAndKeepsItsChanges) {
    setOptions("trace=" + trace_);
    const char* newKey = "\\ORVS\\Events\\{11111111-2222-3333-4444-555555555555}";
    KSGuid guid;
    {
        Library library(ORVC_TEST_LIBRARY);
        const std::uint32_t handle = open(library);
        EXPECT_EQ(flags_, 17u);
        ASSERT_EQ(logOn(library, handle), 0);
        ASSERT_TRUE(waitForCode(event_code::kInitializationComplete));
        EXPECT_EQ(std::count(seen.codes.begin(), seen.codes.end(), event_code::kNewConnection), 24);
        library.KSGetMessages(handle);
        library.KSSysVarCreateKey(handle, "\\ORVS\\", variable_type::kKey, 1);
        library.KSSysVarSubscribe(handle, "\\ORVS\\", 0, 1);
        ASSERT_TRUE(waitForVariable("\\ORVS\\completeBits=1"));
        library.KSSysVarCreateKey(handle, newKey, variable_type::kKey, 1);
        setString(library, handle, (std::string(newKey) + "\\EventName").c_str(), "written");
        ASSERT_TRUE(waitForVariable(std::string(newKey) + "\\EventName=written"));

        const std::string payload(2500, 'p');
        ASSERT_EQ(library.KSFileCreate(handle, &guid), 0);
        EXPECT_EQ(library.KSFileWrite(handle, guid, payload.data(), 2500), 0);
        EXPECT_EQ(library.KSFileRead(handle, guid), 0);
        ASSERT_TRUE(waitForCode(event_code::kFileData));
        EXPECT_EQ(seen.file, payload);
        EXPECT_TRUE(waitUntil([&] { return readAll(file_).find("\\EventName = written") != std::string::npos; }))
            << "saved soon after the change";
        EXPECT_EQ(library.KSFileDelete(handle, guid), 0);
        EXPECT_EQ(library.KSStop(handle), 0);
        ASSERT_TRUE(waitForCode(event_code::kServerStop));
        EXPECT_EQ(library.KSClose(handle), 0);
        EXPECT_EQ(library.KSClose(handle), -1);
    }
    EXPECT_FALSE(GetModuleHandleA("KSPassThru.dll")) << "unloaded with the last reference";
    const std::string trace = readAll(trace_);
    EXPECT_NE(trace.find("KSStart 127.0.0.1:0 0 \"admin\" \"admin\"\r\n"), std::string::npos) << trace;
    EXPECT_NE(trace.find(std::string("KSSysVarSetValue ") + newKey + "\\EventName 0xC0000001 \"written\" 7\r\n"),
              std::string::npos);
    EXPECT_TRUE(trace.ends_with("KSStop\r\nKSClose\r\nKSClose\r\n"));

    Library library(ORVC_TEST_LIBRARY);
    const std::uint32_t handle = open(library);
    seen.reset();
    logOn(library, handle);
    EXPECT_EQ(library.KSFileRead(handle, guid), -1) << "its deletion was saved when the link was closed";
    library.KSSysVarSubscribe(handle, "\\ORVS\\", 0, 1);
    EXPECT_TRUE(waitForVariable(std::string(newKey) + "\\EventName=written"));
    library.KSSysVarCreateKey(handle, (std::string(newKey) + "\\").c_str(), variable_type::kKey, 0);
    EXPECT_TRUE(waitForVariable(std::string(newKey) + "=0"));
    library.KSClose(handle);
}

TEST_F(DemoLibrary, RefusesNullPointersAndStrangeHandles) {
    setOptions("standalone=1");
    Library library(ORVC_TEST_LIBRARY);
    std::uint32_t word = 0;
    EXPECT_EQ(library.KSOpen(nullptr, &word, onEvent, &word), -1);
    EXPECT_EQ(library.KSOpen(&word, nullptr, onEvent, &word), -1);
    EXPECT_EQ(library.KSOpen(&word, &word, nullptr, &word), -1);
    EXPECT_EQ(library.KSOpen(&word, &word, onEvent, nullptr), -1);
    EXPECT_EQ(library.KSDllVersion(&word, &word, nullptr), -1);
    const std::uint32_t handle = open(library);
    EXPECT_EQ(flags_, 16u);
    EXPECT_EQ(library.KSOpen(&word, &flags_, onEvent, &word), -1) << "one link at a time";
    ASSERT_EQ(logOn(library, handle), 0);
    KSSocketAddress address;
    EXPECT_EQ(library.KSStart(handle, nullptr, 0, "", "", &word, &word), -1);
    EXPECT_EQ(library.KSStart(handle, &address, 0, nullptr, "", &word, &word), -1);
    EXPECT_EQ(library.KSStart(handle, &address, 0, "", "", &word, nullptr), -1);
    EXPECT_EQ(library.KSCreateGroup(handle, nullptr, 0, 0, 1), -1);
    EXPECT_EQ(library.KSSysVarCreateKey(handle, nullptr, 0, 1), -1);
    EXPECT_EQ(library.KSSysVarSubscribe(handle, nullptr, 0, 1), -1);
    EXPECT_EQ(library.KSSysVarSetValue(handle, nullptr, variable_type::kString, "", 0), -1);
    EXPECT_EQ(library.KSSysVarSetValue(handle, "\\x", variable_type::kString, nullptr, 1), -1);
    EXPECT_EQ(library.KSSysVarSetValue(handle, "\\x", variable_type::kString, nullptr, 0), 0);
    EXPECT_EQ(library.KSSysVarSetValue(handle, "\\x", variable_type::kDword, "abc", 3), -1);
    EXPECT_EQ(library.KSSysVarSetValue(handle, "\\x", 0xC0000002, "abcd", 4), -1);
    EXPECT_EQ(library.KSFileCreate(handle, nullptr), -1);
    EXPECT_EQ(library.KSFileWrite(handle, {}, nullptr, 1), -1);
    for (const std::uint32_t strange : {0u, handle + 1, 0xFFFFFFFFu}) {
        EXPECT_EQ(library.KSGetMessages(strange), -1);
        EXPECT_EQ(library.KSSysVarSubscribe(strange, "\\ORVS\\", 0, 1), -1);
        EXPECT_EQ(library.KSStop(strange), -1);
        EXPECT_EQ(library.KSClose(strange), -1);
    }
    EXPECT_EQ(library.KSClose(handle), 0);
}

TEST_F(DemoLibrary, LetsAUserLogOnOnceOnTheMachine) {
    setOptions("");
    Library first(ORVC_TEST_LIBRARY);
    Library second(ORVC_TEST_INCOMPLETE_LIBRARY);  // shares nothing with the first, like another process
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
    setOptions("");
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
    setOptions("");
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

// Fifty thousand Events come to 950,000 notifications and a few.
TEST_F(DemoLibrary, IsNoBottleneckInALargeInstallation) {
    setOptions("events=50000");
    Library library(ORVC_TEST_LIBRARY);
    static std::atomic<std::uint32_t> variables;
    variables = 0;
    struct Counter {
        static void KS_CALL count(std::uint32_t code, std::int32_t, const void*, const void*) {
            if (code == event_code::kVariable) ++variables;
        }
    };
    std::uint32_t handle = 0;
    std::uint32_t flags = 16;
    std::uint32_t out = 0;
    const DWORD start = GetTickCount();
    ASSERT_EQ(library.KSOpen(&handle, &flags, &Counter::count, &out), 0);
    const DWORD opened = GetTickCount();
    ASSERT_EQ(logOn(library, handle), 0);
    library.KSSysVarSubscribe(handle, "\\ORVS\\", 0, 1);
    constexpr std::uint32_t kExpected = 50'000 * 19 + 10 * 5 + 9;
    ASSERT_TRUE(waitUntil([&] { return variables >= kExpected; })) << variables;
    std::printf("built in %lu ms, %u notifications in %lu ms\n", opened - start, variables.load(),
                GetTickCount() - opened);
    Sleep(20);
    EXPECT_EQ(variables, kExpected);
    library.KSClose(handle);
}

}  // namespace
}  // namespace orvc
