// What a process holds of the system: the tour tells it at its end, and tests find leaks by it.
#pragma once

#include <windows.h>

#include <iosfwd>

namespace orvc::driver {

struct Holdings {
    unsigned handles = 0;
    unsigned gdi = 0;       // GDI objects
    unsigned windows = 0;   // of one thread, child windows included
    std::size_t bytes = 0;  // private memory
};

// `process` was opened with all rights; `thread` is the id of one of its threads.
Holdings measure(HANDLE process, DWORD thread);

std::ostream& operator<<(std::ostream& out, const Holdings& held);

}  // namespace orvc::driver
