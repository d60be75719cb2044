#include "support/local_settings.h"

#include <variant>

namespace orvc {
namespace {

using IntegerField = std::int32_t LocalSettings::*;
using TextField = std::string LocalSettings::*;

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
    {"settings", "startWidth", &LocalSettings::startWidth, Access::kReadWrite},
    {"settings", "startHeight", &LocalSettings::startHeight, Access::kReadWrite},
    {"settings", "hideMinimized", &LocalSettings::hideMinimized, Access::kReadWrite},
    {"settings", "pathConsoleInstall", &LocalSettings::consoleInstallPath, Access::kReadWrite, When::kConsoleMode},
    {"settings", "pathStandaloneInstall", &LocalSettings::standaloneInstallPath, Access::kReadWrite,
     When::kStandaloneMode},
    {"settings", "installPath", &LocalSettings::sharedFilesPath, Access::kReadOnly},
    {"settings", "IPAddress", &LocalSettings::ipAddress, Access::kReadWrite},
    {"settings", "IPPort", &LocalSettings::ipPort, Access::kReadWrite},
    {"settings", "recordEvents", &LocalSettings::recordEvents, Access::kReadWrite},
    {"settings", "RecordEventsSIP", &LocalSettings::recordEventsSip, Access::kReadOnly},
    {"settings", "RecordEventsRTP", &LocalSettings::recordEventsRtp, Access::kReadOnly},
    {"program", "onlineDocsURL", &LocalSettings::onlineDocsUrl, Access::kReadOnly},
    {"program", "onlineWebURL", &LocalSettings::onlineWebUrl, Access::kReadOnly},
    {"program", "onlineWebMenu", &LocalSettings::onlineWebMenu, Access::kReadOnly},
    {"settings", "startTop", &LocalSettings::startTop, Access::kReadOnly},
    {"settings", "startBottom", &LocalSettings::startBottom, Access::kReadOnly},
    {"settings", "startLeft", &LocalSettings::startLeft, Access::kReadOnly},
    {"settings", "startRight", &LocalSettings::startRight, Access::kReadOnly},
    {"options", "threadPriority", &LocalSettings::threadPriority, Access::kReadOnly},
    {"settings", "UserName", &LocalSettings::userName, Access::kReadWrite},
    {"settings", "UserPassword", &LocalSettings::userPassword, Access::kReadWrite},
    {"settings", "AdapterName", &LocalSettings::adapterName, Access::kReadWrite},
};

}  // namespace

LocalSettings loadSettings(const SettingsStore& store, StartMode mode) {
    LocalSettings settings;
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

bool saveSettings(SettingsStore& store, const LocalSettings& settings, StartMode mode) {
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
