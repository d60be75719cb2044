// What the benchmarks under Wine share: a plain main window, list and drop-down controls, and waiting for something.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>

namespace orvc::bench {

inline bool waitUntil(const std::function<bool()>& condition, DWORD milliseconds, DWORD pause = 1) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > milliseconds) return false;
        Sleep(pause);
    }
    return true;
}

inline HWND makeWindow(const char* windowClass, DWORD style, HWND parent, int y, int height, int id = 0) {
    return CreateWindowExA(0, windowClass, "Benchmark", style | WS_VISIBLE, 0, y, 620, height, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
}

// A list with the console's four columns.
inline HWND makeEventList(HWND parent, int id) {
    const HWND list = makeWindow(WC_LISTVIEWA, WS_CHILD | LVS_REPORT | LVS_SINGLESEL, parent, 0, 380, id);
    constexpr DWORD kStyles = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER;
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);
    char titles[][12] = {"Event Name", "Status", "Last Event", "Resp"};
    for (int i = 0; i < 4; ++i) {
        LVCOLUMNA column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.pszText = titles[i];
        column.cx = 150;
        column.iSubItem = i;
        SendMessageA(list, LVM_INSERTCOLUMNA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
    return list;
}

}  // namespace orvc::bench
