#include "tour/holdings.h"

#include <windows.h>

#include <winternl.h>

#include <array>
#include <ostream>
#include <vector>

namespace orvc::driver {
namespace {

// Wine counts neither handles nor GDI objects for GetProcessHandleCount and GetGuiResources: it keeps them where
// Windows does, in a list of all handles and in a table that every process sees.

unsigned countHandles(HANDLE process) {
    DWORD count = 0;
    if (GetProcessHandleCount(process, &count) != 0 && count != 0) return count;
    constexpr auto kSystemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    struct Entry {
        ULONG processId;
        BYTE type, flags;
        USHORT handle;
        void* object;
        ULONG access;
    };
    std::vector<Entry> table(100'000);  // the first word is the number of the entries behind it
    if (NtQuerySystemInformation(kSystemHandleInformation, table.data(),
                                 static_cast<ULONG>(table.size() * sizeof(Entry)), nullptr) != 0)
        return 0;
    const ULONG all = *reinterpret_cast<ULONG*>(table.data());
    const auto* entries = reinterpret_cast<const Entry*>(reinterpret_cast<ULONG*>(table.data()) + 1);
    for (ULONG i = 0; i < all; ++i)
        count += entries[i].processId == GetProcessId(process);
    return count;
}

unsigned countGdiObjects(HANDLE process) {
    if (const DWORD count = GetGuiResources(process, GR_GDIOBJECTS)) return count;
    constexpr std::size_t kTableInPeb = 0x94;
    struct Entry {
        std::array<BYTE, 14> other;
        BYTE type;  // 0 = free
        std::array<BYTE, 9> rest;
    };
    PROCESS_BASIC_INFORMATION basic{};
    const void* table = nullptr;
    std::vector<Entry> entries(0x4000);
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0 ||
        !ReadProcessMemory(process, reinterpret_cast<const char*>(basic.PebBaseAddress) + kTableInPeb, &table,
                           sizeof table, nullptr) ||
        !ReadProcessMemory(process, table, entries.data(), entries.size() * sizeof(Entry), nullptr))
        return 0;
    unsigned count = 0;
    for (const Entry& entry : entries)
        count += entry.type != 0;
    return count;
}

std::size_t countBytes(HANDLE process) {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQueryEx(process, at, &region, sizeof region) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    return bytes;
}

BOOL CALLBACK count(HWND, LPARAM sum) {
    ++*reinterpret_cast<unsigned*>(sum);
    return TRUE;
}

BOOL CALLBACK countTree(HWND window, LPARAM sum) {
    EnumChildWindows(window, count, sum);
    return count(window, sum);
}

}  // namespace

Holdings measure(HANDLE process, DWORD thread) {
    Holdings held{countHandles(process), countGdiObjects(process), 0, countBytes(process)};
    EnumThreadWindows(thread, countTree, reinterpret_cast<LPARAM>(&held.windows));
    return held;
}

std::ostream& operator<<(std::ostream& out, const Holdings& held) {
    return out << held.handles << " handles, " << held.gdi << " GDI objects, " << held.windows << " windows, "
               << held.bytes / 1024 << " KiB";
}

}  // namespace orvc::driver
