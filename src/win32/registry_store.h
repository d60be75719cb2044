// The console's settings in the registry, below HKEY_CURRENT_USER\Software\Kestrel Sonics\ORVSConfig\<section>.
#pragma once

#include <string>

#include "support/local_settings.h"

namespace orvc::win32 {

class RegistryStore final : public SettingsStore {
  public:
    // `companyKey` is the key below Software.
    explicit RegistryStore(std::string companyKey);

    const std::string& companyKey() const { return companyKey_; }

    std::optional<std::uint32_t> readInteger(const char* section, const char* name) const override;
    std::optional<std::string> readText(const char* section, const char* name) const override;
    bool writeInteger(const char* section, const char* name, std::uint32_t value) override;
    bool writeText(const char* section, const char* name, const std::string& value) override;

  private:
    std::string pathOf(const char* section) const;
    bool write(const char* section, const char* name, unsigned long type, const void* bytes, std::size_t size);

    std::string companyKey_;
};

}  // namespace orvc::win32
