// The tracking log's way to the disk and to the debugger.
#pragma once

#include "support/tracking_log.h"

namespace orvc::win32 {

class SystemLog final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string& path) override;
    bool removeFile(const std::string& path) override;
    bool emptyFile(const std::string& path) override;
    void writeToDebugger(const char* text) override;
};

}  // namespace orvc::win32
