#include "windows/console_fixture.h"

#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>

namespace orvc::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettingsKey = "Software\\Kestrel Sonics\\ORVSConfig\\settings";

}  // namespace

std::vector<std::string> readLines(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

void ConsoleTest::SetUp() {
    RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Kestrel Sonics");
    workFolder_ = (fs::temp_directory_path() / "orvc_console_test").string();
    for (const std::string& path : {supportFolder(), workFolder_})
        fs::remove_all(path);
    fs::create_directory(workFolder_);
}

void ConsoleTest::TearDown() {
    if (HasFailure() && console_.isRunning()) {
        const HWND box = console_.findMessageBox();
        ADD_FAILURE() << "the console still ran; its message box: "
                      << (box != nullptr ? driver::ConsoleDriver::messageText(box) : "none");
    }
    console_.kill();
    fs::remove_all(workFolder_);
}

void ConsoleTest::startConsole(const std::string& options, const std::string& folder) {
    const std::string demo = "fire=0;file=" + workFolder_ + "\\installation.txt;trace=" + workFolder_ + "\\trace.txt;";
    driver::Environment environment = environment_;
    environment.emplace_back("ORVC_DEMO", demo + options);
    ASSERT_TRUE(console_.start(folder + "\\ORVSConfig.exe", environment, workingFolder_));
}

void ConsoleTest::exitConsole() {
    console_.choose(IDM_EXIT);
    ASSERT_TRUE(console_.waitForEnd());
    EXPECT_EQ(console_.exitCode(), 0u);
}

bool ConsoleTest::hasKeyboard(HWND window) {
    SendMessageA(window, WM_NULL, 0, 0);  // what the console does with its windows now comes first
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    return GetForegroundWindow() == window && GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state) &&
           state.hwndActive == window && GetAncestor(state.hwndFocus, GA_ROOT) == window;
}

void ConsoleTest::press(HWND window, BYTE key, std::initializer_list<BYTE> held) {
    ASSERT_TRUE(driver::ConsoleDriver::waitUntil([&] {
        if (GetForegroundWindow() != window) SetForegroundWindow(window);
        return hasKeyboard(window);
    }));
    pressNow(key, held);
}

void ConsoleTest::pressNow(BYTE key, std::initializer_list<BYTE> held) {
    for (const BYTE other : held)
        keybd_event(other, 0, 0, 0);
    keybd_event(key, 0, 0, 0);
    keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
    for (const BYTE other : held)
        keybd_event(other, 0, KEYEVENTF_KEYUP, 0);
}

void ConsoleTest::expectMessage(const std::string& text, const std::string& caption) {
    const HWND box = console_.waitForMessageBox();
    ASSERT_NE(box, nullptr) << text;
    EXPECT_EQ(driver::ConsoleDriver::messageText(box), text);
    EXPECT_EQ(driver::ConsoleDriver::textOf(box), caption);
    driver::ConsoleDriver::click(box, IDOK);
    ASSERT_TRUE(console_.waitUntilGone(box));
}

std::vector<std::string> ConsoleTest::logLines() const {
    static const std::regex prefix(R"(^\d+/\d\d/\d{4} \d+:\d\d:\d\d (\(-?\d{5,}\) )?)");
    std::vector<std::string> lines = readLines(trackingFile());
    for (std::string& line : lines)
        line = std::regex_replace(line, prefix, "");
    return lines;
}

bool ConsoleTest::logHas(const std::string& line) const {
    return std::ranges::count(logLines(), line) > 0;
}

std::vector<std::string> ConsoleTest::tracedCalls() const {
    std::vector<std::string> calls = readLines(traceFile());
    for (std::string& call : calls)
        std::erase(call, '\r');
    return calls;
}

std::vector<std::string> ConsoleTest::tracedCallsFrom(const std::string& first) const {
    std::vector<std::string> calls = tracedCalls();
    calls.erase(calls.begin(),
                std::ranges::find_if(calls, [&](const std::string& call) { return call.starts_with(first); }));
    return calls;
}

void ConsoleTest::setInteger(const char* name, unsigned value) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kSettingsKey, name, REG_DWORD, &value, sizeof value);
}

void ConsoleTest::setText(const char* name, const std::string& value) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kSettingsKey, name, REG_SZ, value.c_str(), static_cast<DWORD>(value.size() + 1));
}

std::optional<unsigned> ConsoleTest::integer(const char* name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS status =
        RegGetValueA(HKEY_CURRENT_USER, kSettingsKey, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return status == ERROR_SUCCESS ? std::optional<unsigned>(value) : std::nullopt;
}

std::optional<std::string> ConsoleTest::text(const char* name) {
    char value[1024] = "";
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueA(HKEY_CURRENT_USER, kSettingsKey, name, RRF_RT_REG_SZ, nullptr, value, &size);
    return status == ERROR_SUCCESS ? std::optional<std::string>(value) : std::nullopt;
}

std::string ConsoleTest::binFolder() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string own(path);
    return own.substr(0, own.rfind('\\'));
}

std::string ConsoleTest::supportFolder() {
    char path[MAX_PATH] = "";
    SHGetSpecialFolderPathA(nullptr, path, CSIDL_APPDATA, TRUE);
    return std::string(path) + "\\Kestrel Sonics";
}

std::string ConsoleTest::makeFolderWithConsole() const {
    const std::string folder = workFolder_ + "\\program";
    fs::create_directory(folder);
    fs::copy(binFolder() + "\\ORVSConfig.exe", folder);
    return folder;
}

}  // namespace orvc::test
