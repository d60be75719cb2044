// Values of a line: settings of any type and value, MAC addresses and GUIDs.
#include <map>
#include <variant>

#include "fuzz/input.h"
#include "fuzz/silent_log.h"
#include "model/guid.h"
#include "model/mac.h"
#include "support/folders.h"
#include "support/settings.h"

namespace orvc {
namespace {

// Each value that is asked for is read from the input; some are absent, or of another type.
class FuzzedStore final : public SettingsStore {
  public:
    explicit FuzzedStore(Input& input) : input_(input) {}

    std::optional<std::uint32_t> readInteger(const char* section, const char* name) const override {
        if (input_.byte() % 3 != 1) return std::nullopt;
        return std::get<0>(taken_[section + std::string(name)] = input_.word());
    }
    std::optional<std::string> readText(const char* section, const char* name) const override {
        if (input_.byte() % 3 != 2) return std::nullopt;
        return std::get<1>(taken_[section + std::string(name)] = input_.terminated());
    }
    bool writeInteger(const char* section, const char* name, std::uint32_t value) override {
        return write(section + std::string(name), value);
    }
    bool writeText(const char* section, const char* name, const std::string& value) override {
        return write(section + std::string(name), value);
    }

  private:
    using Value = std::variant<std::uint32_t, std::string>;

    bool write(const std::string& name, const Value& value) const {
        require(!taken_.contains(name) || taken_[name] == value, "a setting that was loaded is saved as it was");
        return true;
    }

    Input& input_;
    mutable std::map<std::string, Value> taken_;
};

void checkSettings(Input& input) {
    const StartMode mode = input.flag() ? StartMode::kConsole : StartMode::kStandalone;
    FuzzedStore store(input);
    Settings settings = loadSettings(store, mode);
    require(saveSettings(store, settings, mode), "settings can be saved");
    const std::string& path = settings.installPath(mode);
    const std::string folder = folderOr(path, "c:\\default");
    require(path.empty() ? folder == "c:\\default" : path.starts_with(folder), "a folder loses at most its end");
}

void checkIdentifiers(const std::string& text) {
    SilentLog silent;
    if (const auto mac = parseMac(text)) require(parseMac(formatMac(*mac)) == mac, "a written address reads as it was");
    const KSGuid guid = makeGUID(text, silent.log);
    const std::string written = formatGuid(guid);
    require(written.size() == 38, "GUIDs have one length");
    require(makeGUID(written, silent.log) == guid, "a written GUID reads as it was");
}

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvc::Input input(data, size);
    if (input.flag())
        orvc::checkSettings(input);
    else
        orvc::checkIdentifiers(std::string(input.rest()));
    return 0;
}
