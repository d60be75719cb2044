#include "support/local_settings.h"

#include <variant>

namespace orvc {
namespace {

using IntegerField = std::int32_t LocalSettings::*;
using TextField = std::string LocalSettings::*;

enum class When { kAlways, kConsoleMode, kStandaloneMode };

// One setting: where it is stored, and which member holds it.
struct Row {
    const char* section;
    const char* name;
    std::variant<IntegerField, TextField> field;
    When when = When::kAlways;

    bool appliesTo(StartMode mode) const {
        return when == When::kAlways || (when == When::kConsoleMode) == (mode == StartMode::kConsole);
    }
};

// In the order in which they are read and written.
constexpr Row kRows[] = {
    {"settings", "startWidth", &LocalSettings::startWidth},
    {"settings", "startHeight", &LocalSettings::startHeight},
    {"settings", "hideMinimized", &LocalSettings::hideMinimized},
    {"settings", "pathConsoleInstall", &LocalSettings::consoleInstallPath, When::kConsoleMode},
    {"settings", "pathStandaloneInstall", &LocalSettings::standaloneInstallPath, When::kStandaloneMode},
    {"settings", "IPAddress", &LocalSettings::ipAddress},
    {"settings", "IPPort", &LocalSettings::ipPort},
    {"settings", "recordEvents", &LocalSettings::recordEvents},
    {"settings", "UserName", &LocalSettings::userName},
    {"settings", "UserPassword", &LocalSettings::userPassword},
    {"settings", "AdapterName", &LocalSettings::adapterName},
    {"settings", "ListColumns", &LocalSettings::listColumns},
    {"settings", "ListSort", &LocalSettings::listSort},
    {"settings", "ListDetail", &LocalSettings::listDetail},
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
        if (!row.appliesTo(mode)) continue;
        if (const auto* integer = std::get_if<IntegerField>(&row.field))
            saved &= store.writeInteger(row.section, row.name, static_cast<std::uint32_t>(settings.*(*integer)));
        else
            saved &= store.writeText(row.section, row.name, settings.*std::get<TextField>(row.field));
    }
    return saved;
}

}  // namespace orvc
