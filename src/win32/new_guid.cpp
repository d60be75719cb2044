#include "win32/new_guid.h"

#include <objbase.h>
#include <windows.h>

#include <algorithm>

namespace orvc::win32 {

KSGuid newGuid() {
    GUID made{};
    KSGuid guid;
    if (FAILED(CoCreateGuid(&made))) return guid;
    guid.data1 = made.Data1;
    guid.data2 = made.Data2;
    guid.data3 = made.Data3;
    std::ranges::copy(made.Data4, guid.data4.begin());
    return guid;
}

}  // namespace orvc::win32
