#include "support/settings.h"

#include <variant>

namespace orvc {
namespace {

using IntegerField = std::int32_t Settings::*;
using TextField = std::string Settings::*;

enum class Access { kReadOnly, kReadWrite };
enum class When { kAlways, kConsoleMode, kStandaloneMode };

// One setting: where it is stored, which member holds it, and whether the console writes it back.
struct Row {
    const char* section;
    const char* name;
    std::variant<IntegerField, TextField> field;
    Access access;
    When when = When::kAlways;

    bool appliesTo(StartMode mode) const {
        return when == When::kAlways || (when == When::kConsoleMode) == (mode == StartMode::kConsole);
    }
};

// In the order in which they are read and written.
constexpr Row kRows[] = {
    {"settings", "startWidth", &Settings::startWidth, Access::kReadWrite},
    {"settings", "startHeight", &Settings::startHeight, Access::kReadWrite},
    {"settings", "hideMinimized", &Settings::hideMinimized, Access::kReadWrite},
    {"settings", "pathConsoleInstall", &Settings::consoleInstallPath, Access::kReadWrite, When::kConsoleMode},
    {"settings", "pathStandaloneInstall", &Settings::standaloneInstallPath, Access::kReadWrite, When::kStandaloneMode},
    {"settings", "installPath", &Settings::sharedFilesPath, Access::kReadOnly},
    {"settings", "IPAddress", &Settings::ipAddress, Access::kReadWrite},
    {"settings", "IPPort", &Settings::ipPort, Access::kReadWrite},
    {"settings", "recordEvents", &Settings::recordEvents, Access::kReadWrite},
    {"settings", "RecordEventsSIP", &Settings::recordEventsSip, Access::kReadOnly},
    {"settings", "RecordEventsRTP", &Settings::recordEventsRtp, Access::kReadOnly},
    {"program", "onlineDocsURL", &Settings::onlineDocsUrl, Access::kReadOnly},
    {"program", "onlineWebURL", &Settings::onlineWebUrl, Access::kReadOnly},
    {"program", "onlineWebMenu", &Settings::onlineWebMenu, Access::kReadOnly},
    {"settings", "startTop", &Settings::startTop, Access::kReadOnly},
    {"settings", "startBottom", &Settings::startBottom, Access::kReadOnly},
    {"settings", "startLeft", &Settings::startLeft, Access::kReadOnly},
    {"settings", "startRight", &Settings::startRight, Access::kReadOnly},
    {"options", "threadPriority", &Settings::threadPriority, Access::kReadOnly},
    {"settings", "UserName", &Settings::userName, Access::kReadWrite},
    {"settings", "UserPassword", &Settings::userPassword, Access::kReadWrite},
    {"settings", "AdapterName", &Settings::adapterName, Access::kReadWrite},
};

}  // namespace

Settings loadSettings(const SettingsStore& store, StartMode mode) {
    Settings settings;
    for (const Row& row : kRows) {
        if (!row.appliesTo(mode)) continue;
        if (const auto* integer = std::get_if<IntegerField>(&row.field)) {
            if (const auto value = store.readInteger(row.section, row.name))
                settings.*(*integer) = static_cast<std::int32_t>(*value);
        } else if (const auto value = store.readText(row.section, row.name)) {
            settings.*std::get<TextField>(row.field) = *value;
        }
    }
    return settings;
}

bool saveSettings(SettingsStore& store, const Settings& settings, StartMode mode) {
    bool saved = true;
    for (const Row& row : kRows) {
        if (row.access == Access::kReadOnly || !row.appliesTo(mode)) continue;
        if (const auto* integer = std::get_if<IntegerField>(&row.field))
            saved &= store.writeInteger(row.section, row.name, static_cast<std::uint32_t>(settings.*(*integer)));
        else
            saved &= store.writeText(row.section, row.name, settings.*std::get<TextField>(row.field));
    }
    return saved;
}

}  // namespace orvc
