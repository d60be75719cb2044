#include "windows/menu_state.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace orvc::test {

// A menu can only be read by the process that made it, so a thread of the console asks: its code is a single call,
// GetMenuState(menu, command, MF_BYCOMMAND), and its exit code the result.
UINT menuState(driver::ConsoleDriver& console, unsigned command) {
    std::array<std::uint8_t, 22> code{0x6A, MF_BYCOMMAND,  // push flags
                                      0x68, 0,
                                      0,    0,
                                      0,  // push command
                                      0x68, 0,
                                      0,    0,
                                      0,  // push menu
                                      0xB8, 0,
                                      0,    0,
                                      0,  // mov eax, GetMenuState
                                      0xFF, 0xD0,
                                      0xC2, 4,
                                      0};  // call eax; ret 4
    const HMENU menu = GetMenu(console.mainWindow());
    // As the menu is about to open: then the console brings it up to date.
    SendMessageA(console.mainWindow(), WM_INITMENU, reinterpret_cast<WPARAM>(menu), 0);
    const auto function = reinterpret_cast<std::uintptr_t>(&GetMenuState);
    std::memcpy(&code[3], &command, 4);
    std::memcpy(&code[8], &menu, 4);
    std::memcpy(&code[13], &function, 4);
    void* const place =
        VirtualAllocEx(console.process(), nullptr, code.size(), MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
    WriteProcessMemory(console.process(), place, code.data(), code.size(), nullptr);
    const HANDLE thread = CreateRemoteThread(console.process(), nullptr, 0,
                                             reinterpret_cast<LPTHREAD_START_ROUTINE>(place), nullptr, 0, nullptr);
    DWORD state = static_cast<DWORD>(-1);
    WaitForSingleObject(thread, driver::ConsoleDriver::kPatience);
    GetExitCodeThread(thread, &state);
    CloseHandle(thread);
    VirtualFreeEx(console.process(), place, 0, MEM_RELEASE);
    return state;
}

}  // namespace orvc::test
