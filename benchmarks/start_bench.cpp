// start_bench FOLDER: from the start of the console's process to its visible main window, against a bare dialog with a
// list. FOLDER holds the programs.
#include <cstdlib>
#include <string>

#include "bench.h"
#include "resources/resource.h"
#include "tour/console_driver.h"
#include "windows_bench.h"

namespace orvc::bench {
namespace {

// Finds a visible window of the process with the list in it.
BOOL CALLBACK findList(HWND window, LPARAM parameter) {
    auto& [process, found] = *reinterpret_cast<std::pair<DWORD, bool>*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    found = owner == process && IsWindowVisible(window) && GetDlgItem(window, IDC_EVENT_LIST) != nullptr;
    return !found;
}

void start(const std::string& program, const char* series, const driver::Environment& environment = {}) {
    driver::ConsoleDriver driver;
    const auto begin = StopClock::now();
    if (!driver.start(program, environment)) std::exit(EXIT_FAILURE);
    std::pair<DWORD, bool> search{GetProcessId(driver.process()), false};
    if (!waitUntil([&] { return EnumWindows(findList, reinterpret_cast<LPARAM>(&search)), search.second; }, 15'000))
        std::exit(EXIT_FAILURE);
    report(series, secondsSince(begin));
    driver.kill();
}

}  // namespace
}  // namespace orvc::bench

int main(int argc, char** argv) {
    using namespace orvc::bench;
    const std::string folder = argc > 1 ? argv[1] : ".";
    // The libraries that the console has beside those of any program with a list: mail, network, help, versions.
    const std::string libraries =
        "uxtheme.dll comdlg32.dll shell32.dll ole32.dll iphlpapi.dll ws2_32.dll crypt32.dll "
        "secur32.dll bcrypt.dll version.dll";
    start(folder + "\\bare_dialog.exe", "start.bare");
    start(folder + "\\ORVSConfig.exe", "start.console", {{"ORVC_DEMO", "events=1;fire=0"}});
    start(folder + "\\bare_dialog.exe", "start.libraries", {{"BENCH_LIBRARIES", libraries}});
}
