// A log that formats every line and keeps none.
#pragma once

#include "fake_clock.h"
#include "support/tracking_log.h"

namespace orvc {

struct SilentLog final : LogSystem {
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    bool emptyFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}

    FakeClock clock;
    TrackingLog log{*this, clock};
};

}  // namespace orvc
