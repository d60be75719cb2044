// What the program lends to its main window.
#pragma once

#include <string>

#include "console/local_setup.h"
#include "link/server_link.h"
#include "support/clock.h"
#include "support/folders.h"
#include "support/tracking_log.h"
#include "ui/resources.h"

namespace orvc {

// All of it outlives the window.
struct ConsoleParts {
    const ui::Resources& resources;
    TrackingLog& log;
    const Clock& clock;
    LocalSetup& settings;
    KSServerLink& link;
    FileSystem& files;
    std::string companyKey;
};

}  // namespace orvc
