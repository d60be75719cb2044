// The console's variable store with the Events behind it, without a window and without a server.
#pragma once

#include "link/variable_store.h"
#include "lists/event_table.h"
#include "model/event_list.h"

namespace orvc::bench {

class SilentLogSystem final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    bool emptyFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}
};

// Only what is painted needs texts.
class NoTexts final : public StringTable {
  public:
    std::string text(unsigned) const override { return {}; }
};

struct EventMirror {
    EventMirror() {
        log.endStartUp();  // recording is off, as it is unless support asks
        store.addOwner(events);
    }

    const SystemClock clock;
    SilentLogSystem logSystem;
    TrackingLog log{logSystem, clock};
    const NoTexts texts;
    EventTable table{texts, clock, [](std::string_view name) { return std::string(name); }};
    EventList events{table, log, clock};
    VariableStore store{log};
};

}  // namespace orvc::bench
