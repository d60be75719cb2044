#include "win32/network.h"

#include <winsock2.h>

#include <iphlpapi.h>

#include <vector>

namespace orvc::win32 {

std::uint32_t addressFromText(const std::string& text) {
    return inet_addr(text.c_str());
}

std::string findAdapterName(const std::string& serverAddress) {
    ULONG size = 0;
    if (GetAdaptersInfo(nullptr, &size) != ERROR_BUFFER_OVERFLOW) return {};
    std::vector<char> block(size);
    auto* adapters = reinterpret_cast<IP_ADAPTER_INFO*>(block.data());
    if (GetAdaptersInfo(adapters, &size) != ERROR_SUCCESS) return {};
    const std::uint32_t server = addressFromText(serverAddress);
    std::string first;
    for (const IP_ADAPTER_INFO* adapter = adapters; adapter != nullptr; adapter = adapter->Next) {
        for (const IP_ADDR_STRING* own = &adapter->IpAddressList; own != nullptr; own = own->Next) {
            const std::uint32_t address = addressFromText(own->IpAddress.String);
            const std::uint32_t mask = addressFromText(own->IpMask.String);
            if (address == 0 || address == INADDR_NONE) continue;
            if (server != INADDR_NONE && (address & mask) == (server & mask)) return adapter->AdapterName;
            if (first.empty()) first = adapter->AdapterName;
        }
    }
    return first;
}

}  // namespace orvc::win32
