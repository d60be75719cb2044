#include "console/application.h"

#include <windows.h>

#include <commctrl.h>

#include <exception>

#include "console/main_window.h"
#include "support/language.h"
#include "win32/library_search.h"
#include "win32/registry_store.h"
#include "win32/system_files.h"
#include "win32/system_log.h"

namespace orvc {
namespace {

constexpr const char* kCompanyKey = "Kestrel Sonics";

void selectLanguage(ui::Resources& resources, TrackingLog& log) {
    const auto language = chooseLanguage(currentLanguages(), [&](std::uint16_t candidate) {
        return resources.loadLanguage(languageLibraryName(candidate));
    });
    if (language)
        log.log("Loaded language for 0x%04x", *language);
    else
        log.log("Loaded language from ORVSConfig.EXE");
}

void run() {
    win32::restrictLibrarySearch();
    INITCOMMONCONTROLSEX classes{};
    classes.dwSize = sizeof classes;
    classes.dwICC = ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES;
    InitCommonControlsEx(&classes);

    const SystemClock clock;
    win32::SystemLog systemLog;
    win32::SystemFiles files;
    win32::RegistryStore registry(kCompanyKey);
    ui::Resources resources;
    TrackingLog log(systemLog, clock);
    LocalSetup settings(registry, files, log);
    KSServerLink link;
    MainWindow window({resources, log, clock, settings, link, files, registry.companyKey()});
    selectLanguage(resources, log);
    window.warnAboutScratchFolder(settings.load(StartMode::kStandalone));
    window.runModal(nullptr);
    settings.save();
}

}  // namespace

int runConsole() {
    try {
        run();
        return 0;
    } catch (const std::exception& error) {
        ui::tellFailure(nullptr, error);
        return 1;
    }
}

}  // namespace orvc
