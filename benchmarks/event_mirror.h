// The console's variable store with the Events behind it, without a window and without a server.
#pragma once

#include "link/variable_store.h"
#include "model/event_list.h"
#include "tests/support/silent_server_link.h"

namespace orvc::bench {

class SilentLogSystem final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}
};

struct EventMirror {
    EventMirror() {
        log.endStartUp();  // recording is off, as it is unless support asks
        store.addOwner(events);
    }

    const SystemClock clock;
    SilentLogSystem logSystem;
    TrackingLog log{logSystem, clock};
    SilentServerLink link;
    Directory directory{log};
    EventList events{link, directory, log, clock, [](std::string_view name) { return std::string(name); }};
    VariableStore store{log};
};

}  // namespace orvc::bench
