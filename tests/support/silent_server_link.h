// A server link behind which there is no server.
#pragma once

#include "link/server_link.h"

namespace orvc {

// Answers every call with success and does nothing.
class SilentServerLink : public ServerLink {
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
    std::int32_t createRoot(const std::string&) override { return 0; }
    std::int32_t createKey(const std::string&, bool) override { return 0; }
    std::int32_t subscribe(const std::string&) override { return 0; }
    std::int32_t setText(const std::string&, const std::string&) override { return 0; }
    std::int32_t setDword(const std::string&, std::uint32_t) override { return 0; }
    std::int32_t createFile(KSGuid&) override { return 0; }
    std::int32_t readFile(const KSGuid&) override { return 0; }
    std::int32_t writeFile(const KSGuid&, std::string_view) override { return 0; }
    std::int32_t deleteFile(const KSGuid&) override { return 0; }
};

}  // namespace orvc
