// The console's own settings: per user, in the registry; read at start-up and written when the console ends.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvc {

// Where settings are kept. Values are found by section and name; User-interface thread.
class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    // Empty when the value is absent, of another type, or cannot be read.
    virtual std::optional<std::uint32_t> readInteger(const char* section, const char* name) const = 0;
    virtual std::optional<std::string> readText(const char* section, const char* name) const = 0;
    // Return false when the value cannot be written.
    virtual bool writeInteger(const char* section, const char* name, std::uint32_t value) = 0;
    virtual bool writeText(const char* section, const char* name, const std::string& value) = 0;
};

// How the console was started, as the library's open flags say.
enum class StartMode {
    kStandalone,  // no logon
    kConsole,     // logs on to a server
};

// All settings with the values they have when the store holds none. Integers are signed as the registry's users see
// them; flags are 0 or 1 unless said.
struct LocalSettings {
    std::int32_t startWidth = 0;  // of the main window in pixels; 0 = not known
    std::int32_t startHeight = 0;
    std::int32_t hideMinimized = 0;
    std::int32_t recordEvents = 0;  // non-zero = on; the menu stores -1
    std::string ipAddress = "0.0.0.0";
    std::int32_t ipPort = 3010;
    std::string userName;
    std::string userPassword;  // as typed
    std::string adapterName;
    std::string listColumns;  // of the Event list; what these three hold is the list's own matter
    std::string listSort;
    std::int32_t listDetail = 1;
    std::string consoleInstallPath;  // of the start mode in use: see StartMode
    std::string standaloneInstallPath;

    // The install path of one start mode.
    std::string& installPath(StartMode mode) {
        return mode == StartMode::kConsole ? consoleInstallPath : standaloneInstallPath;
    }
};

// Reads every setting; an absent value or one of another type takes its default. Of the two install paths only that of
// `mode` is read.
LocalSettings loadSettings(const SettingsStore& store, StartMode mode);

// Writes the settings that the console may change, among them the install path of `mode`. Returns false when any of
// them could not be written; the others are written all the same.
bool saveSettings(SettingsStore& store, const LocalSettings& settings, StartMode mode);

}  // namespace orvc
