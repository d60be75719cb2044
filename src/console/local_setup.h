// The console's settings and folders, as start-up finds them.
#pragma once

#include <string>

#include "support/folders.h"
#include "support/language.h"
#include "support/local_settings.h"
#include "support/tracking_log.h"

namespace orvc {

// Purpose: loads the settings together with the folders that they name, and saves what the console changed.
// Thread: user-interface thread. Lifetime: what the constructor takes outlives it.
class LocalSetup {
  public:
    LocalSetup(SettingsStore& store, FileSystem& files, TrackingLog& log);

    // Reads every setting, empties the call-queue scratch folder and makes the support folder. Returns false when there
    // is no scratch folder afterwards.
    bool load(StartMode mode);
    // Writes what the console may change; false when the store refuses.
    bool save();

    LocalSettings& values() { return settings_; }
    // Without a trailing backslash.
    const std::string& installFolder() const { return installFolder_; }

  private:
    SettingsStore& store_;
    FileSystem& files_;
    TrackingLog& log_;
    LocalSettings settings_;
    StartMode mode_ = StartMode::kStandalone;
    std::string installFolder_;
};

// Identifiers of the user's and the system's language, in the order in which they are tried.
LanguageCandidates currentLanguages();

}  // namespace orvc
