#include "console/local_setup.h"

#include <windows.h>

#include "win32/system_files.h"

namespace orvc {

LocalSetup::LocalSetup(SettingsStore& store, FileSystem& files, TrackingLog& log)
    : store_(store), files_(files), log_(log) {}

bool LocalSetup::load(StartMode mode) {
    mode_ = mode;
    settings_ = loadSettings(store_, mode);
    installFolder_ = folderOr(settings_.installPath(mode), win32::programFolder());
    const bool scratchReady = prepareCallQueueFolder(files_, callQueueFolder(win32::environmentValue("temp")));
    const std::string support = supportFolder(win32::applicationDataFolder());
    files_.makeFolder(support);
    log_.setSupportFolder(support);
    log_.setRecordEvents(settings_.recordEvents);
    return scratchReady;
}

bool LocalSetup::save() {
    settings_.recordEvents = log_.recordEvents();
    return saveSettings(store_, settings_, mode_);
}

LanguageCandidates currentLanguages() {
    return languageCandidates(GetUserDefaultLangID(), GetSystemDefaultLangID());
}

}  // namespace orvc
