#include "demo_server/windows/windows_host.h"

#include <ctime>

namespace orvc::demo {

bool WindowsHost::claimUser(const std::string& name) {
    // A backslash divides the names of kernel objects; a user's name may hold anything.
    std::string objectName = "Global\\Kestrel Sonics demo server user ";
    for (const char character : name)
        objectName += character == '\\' ? '/' : character;
    OwnedHandle mutex(CreateMutexA(nullptr, FALSE, objectName.c_str()));
    const DWORD error = GetLastError();
    if (!mutex || error == ERROR_ALREADY_EXISTS) return false;
    claimed_ = std::move(mutex);
    return true;
}

Millis WindowsHost::ticks() const {
    return GetTickCount64();
}

std::uint32_t WindowsHost::utcSeconds() const {
    return static_cast<std::uint32_t>(std::time(nullptr));
}

}  // namespace orvc::demo
