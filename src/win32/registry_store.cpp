#include "win32/registry_store.h"

#include <windows.h>

#include "support/text.h"
#include "win32/handles.h"

namespace orvc::win32 {

RegistryStore::RegistryStore(std::string companyKey) : companyKey_(std::move(companyKey)) {}

std::string RegistryStore::pathOf(const char* section) const {
    return "Software\\" + companyKey_ + "\\ORVSConfig\\" + section;
}

std::optional<std::uint32_t> RegistryStore::readInteger(const char* section, const char* name) const {
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS status =
        RegGetValueA(HKEY_CURRENT_USER, pathOf(section).c_str(), name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return status == ERROR_SUCCESS ? std::optional<std::uint32_t>(value) : std::nullopt;
}

std::optional<std::string> RegistryStore::readText(const char* section, const char* name) const {
    const std::string path = pathOf(section);
    DWORD size = 0;
    if (RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return std::nullopt;
    // Room for a terminator that the value may lack.
    std::string value(size + 1, '\0');
    size = static_cast<DWORD>(value.size());
    if (RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name, RRF_RT_REG_SZ, nullptr, value.data(), &size) !=
        ERROR_SUCCESS)
        return std::nullopt;
    value.resize(untilZero(value).size());
    return value;
}

bool RegistryStore::writeInteger(const char* section, const char* name, std::uint32_t value) {
    return write(section, name, REG_DWORD, &value, sizeof value);
}

bool RegistryStore::writeText(const char* section, const char* name, const std::string& value) {
    return write(section, name, REG_SZ, value.c_str(), value.size() + 1);
}

bool RegistryStore::write(const char* section, const char* name, unsigned long type, const void* bytes,
                          std::size_t size) {
    UniqueRegistryKey key;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, pathOf(section).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE,
                        nullptr, key.receive(), nullptr) != ERROR_SUCCESS)
        return false;
    return RegSetValueExA(key.get(), name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)) ==
           ERROR_SUCCESS;
}

}  // namespace orvc::win32
