// Addresses and adapters of this workstation.
#pragma once

#include <cstdint>
#include <string>

namespace orvc::win32 {

// The standard conversion of a dotted text, in network byte order; all bits set for a text that is no address.
std::uint32_t addressFromText(const std::string& text);

// Name of the adapter whose subnet holds `serverAddress` (dotted), else of the first that has an address; empty when
// there is none.
std::string findAdapterName(const std::string& serverAddress);

}  // namespace orvc::win32
