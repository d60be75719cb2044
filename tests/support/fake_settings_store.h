// A settings store in memory: values by "section/name", all as texts; integers begin with "#".
#pragma once

#include <map>

#include "journal.h"
#include "support/settings.h"

namespace orvc {

class FakeSettingsStore final : public SettingsStore {
  public:
    std::optional<std::uint32_t> readInteger(const char* section, const char* name) const override {
        const std::string value = find(section, name);
        if (!value.starts_with('#')) return std::nullopt;
        return static_cast<std::uint32_t>(std::stoul(value.substr(1)));
    }
    std::optional<std::string> readText(const char* section, const char* name) const override {
        const std::string value = find(section, name);
        return value.empty() || value.starts_with('#') ? std::nullopt : std::optional(value);
    }
    bool writeInteger(const char* section, const char* name, std::uint32_t value) override {
        return writeText(section, name, "#" + std::to_string(value));
    }
    bool writeText(const char* section, const char* name, const std::string& value) override {
        written.add(std::string(section) + "/" + name + "=" + value);
        return name != unwritable;
    }

    std::map<std::string, std::string> values;
    Journal written;
    std::string unwritable;  // one name

  private:
    std::string find(const char* section, const char* name) const {
        const auto found = values.find(std::string(section) + "/" + name);
        return found != values.end() ? found->second : "";
    }
};

}  // namespace orvc
