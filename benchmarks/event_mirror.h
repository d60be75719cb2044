// The console's variable store with the Events behind it, without a window and without a server.
#pragma once

#include "link/variable_store.h"
#include "model/event_list.h"

namespace orvc::bench {

class SilentLogSystem final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string&) override { return nullptr; }
    bool removeFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}
};

// Answers every call with success and does nothing.
class SilentLink final : public ServerLink {
  public:
    bool isOpen() const override { return true; }
    StartResult start(const KSSocketAddress&, const std::string&, const std::string&) override { return {0, true}; }
    std::int32_t stop() override { return 0; }
    std::int32_t close() override { return 0; }
    void unload() override {}
    std::int32_t createGroup(const KSGroupRecord&) override { return 0; }
    std::int32_t deleteGroup(std::uint32_t) override { return 0; }
    std::int32_t getGroupMembers(std::uint32_t) override { return 0; }
    std::int32_t getMessages() override { return 0; }
    std::int32_t resendSettings() override { return 0; }
    std::int32_t createKey(const std::string&, bool) override { return 0; }
    std::int32_t subscribe(const std::string&) override { return 0; }
    std::int32_t setText(const std::string&, const std::string&) override { return 0; }
    std::int32_t setDword(const std::string&, std::uint32_t) override { return 0; }
    std::int32_t createFile(KSGuid&) override { return 0; }
    std::int32_t readFile(const KSGuid&) override { return 0; }
    std::int32_t writeFile(const KSGuid&, std::string_view) override { return 0; }
    std::int32_t deleteFile(const KSGuid&) override { return 0; }
};

struct EventMirror {
    EventMirror() {
        log.endStartUp();  // recording is off, as it is unless support asks
        store.addOwner(events);
    }

    const SystemClock clock;
    SilentLogSystem logSystem;
    TrackingLog log{logSystem, clock};
    SilentLink link;
    Directory directory{log};
    EventList events{link, directory, log, clock, [](std::string_view name) { return std::string(name); }};
    VariableStore store{log};
};

}  // namespace orvc::bench
