// Settings of any value and type, and where they go: folders, the logon's address and port.
#include <map>
#include <variant>

#include "fuzz/input.h"
#include "support/folders.h"
#include "support/settings.h"

namespace orvc {
namespace {

using Value = std::variant<std::monostate, std::uint32_t, std::string>;

// Each value that is asked for and not there yet is read from the input.
class FuzzedStore final : public SettingsStore {
  public:
    explicit FuzzedStore(Input& input) : input_(input) {}

    std::optional<std::uint32_t> readInteger(const char* section, const char* name) const override {
        return read<std::uint32_t>(section, name);
    }
    std::optional<std::string> readText(const char* section, const char* name) const override {
        return read<std::string>(section, name);
    }
    bool writeInteger(const char* section, const char* name, std::uint32_t value) override {
        values_[{section, name}] = value;
        return true;
    }
    bool writeText(const char* section, const char* name, const std::string& value) override {
        values_[{section, name}] = value;
        return true;
    }

  private:
    template <typename T>
    std::optional<T> read(const char* section, const char* name) const {
        const auto [found, isNew] = values_.try_emplace({section, name});
        if (isNew) {
            const unsigned kind = input_.byte() % 3;
            if (kind == 1) found->second = input_.word();
            if (kind == 2) found->second = input_.terminated();
        }
        const T* value = std::get_if<T>(&found->second);
        return value != nullptr ? std::optional(*value) : std::nullopt;
    }

    Input& input_;
    mutable std::map<std::pair<std::string, std::string>, Value> values_;
};

bool areEqual(const Settings& a, const Settings& b) {
    const auto integers = [](const Settings& s) {
        return std::vector{s.startWidth,      s.startHeight, s.startLeft,     s.startRight,
                           s.startTop,        s.startBottom, s.recordEvents,  s.recordEventsSip,
                           s.recordEventsRtp, s.ipPort,      s.hideMinimized, s.threadPriority};
    };
    const auto texts = [](const Settings& s) {
        return std::vector{s.ipAddress,     s.userName,           s.userPassword,
                           s.adapterName,   s.consoleInstallPath, s.standaloneInstallPath,
                           s.onlineDocsUrl, s.onlineWebUrl,       s.sharedFilesPath,
                           s.onlineWebMenu};
    };
    return integers(a) == integers(b) && texts(a) == texts(b);
}

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvc;
    Input input(data, size);
    const StartMode mode = input.flag() ? StartMode::kConsole : StartMode::kStandalone;
    FuzzedStore store(input);
    const Settings loaded = loadSettings(store, mode);
    require(saveSettings(store, loaded, mode), "settings can be saved");
    require(areEqual(loadSettings(store, mode), loaded), "saved settings load as they were");

    Settings settings = loaded;
    const std::string folder = folderOr(settings.installPath(mode), "c:\\default");
    require(!settings.installPath(mode).empty() || folder == "c:\\default", "an empty path means the default");
    require(settings.installPath(mode).starts_with(folder) || settings.installPath(mode).empty(),
            "a folder loses at most its end");
    return 0;
}
