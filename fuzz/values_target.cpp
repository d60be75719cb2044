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

    const auto& values() const { return values_; }
    bool hasWhatWasTaken() const {
        return std::ranges::all_of(taken_, [this](const auto& one) { return values_.at(one.first) == one.second; });
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
        if (value == nullptr) return std::nullopt;
        taken_[{section, name}] = *value;
        return *value;
    }

    Input& input_;
    mutable std::map<std::pair<std::string, std::string>, Value> values_;
    mutable std::map<std::pair<std::string, std::string>, Value> taken_;  // read, and of the type that was asked for
};

void checkSettings(Input& input) {
    const StartMode mode = input.flag() ? StartMode::kConsole : StartMode::kStandalone;
    FuzzedStore store(input);
    const Settings loaded = loadSettings(store, mode);
    require(saveSettings(store, loaded, mode), "settings can be saved");
    require(store.hasWhatWasTaken(), "a setting that was loaded is saved as it was");
    const auto saved = store.values();
    require(saveSettings(store, loadSettings(store, mode), mode) && store.values() == saved,
            "saved settings load as they were");

    Settings settings = loaded;
    const std::string folder = folderOr(settings.installPath(mode), "c:\\default");
    require(!settings.installPath(mode).empty() || folder == "c:\\default", "an empty path means the default");
    require(settings.installPath(mode).starts_with(folder) || settings.installPath(mode).empty(),
            "a folder loses at most its end");
}

void checkIdentifiers(const std::string& text) {
    SilentLog silent;
    if (const auto mac = parseMac(text)) {
        require(parseMac(formatMac(*mac)) == mac, "a written address reads as it was");
        require(formatMac(*mac).size() == 17 && formatMacTail(*mac).size() == 6, "addresses have one length");
    }
    const KSGuid guid = makeGUID(text, silent.log);
    const std::string written = formatGuid(guid);
    require(written.size() == 38, "GUIDs have one length");
    require(makeGUID(written, silent.log) == guid, "a written GUID reads as it was");

    // Any bytes are an address and a GUID too.
    KSMac mac{};
    KSGuid fromBytes;
    std::memcpy(mac.data(), text.data(), std::min(text.size(), sizeof mac));
    std::memcpy(&fromBytes, text.data(), std::min(text.size(), sizeof fromBytes));
    require(parseMac(formatMac(mac)) == mac, "every address can be written");
    require(makeGUID(formatGuid(fromBytes), silent.log) == fromBytes, "every GUID can be written");
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
