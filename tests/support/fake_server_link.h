// A server link that writes every call into the journal.
#pragma once

#include "journal.h"
#include "link/server_link.h"
#include "model/guid.h"
#include "support/text.h"

namespace orvc {

class FakeServerLink : public ServerLink {
  public:
    explicit FakeServerLink(Journal& journal) : journal_(journal) {}

    bool isOpen() const override { return open; }
    StartResult start(const KSSocketAddress& to, const std::string& logonId, const std::string& password) override {
        std::array<std::uint8_t, 2> port;
        std::memcpy(port.data(), &to.port, port.size());
        called(formatText("KSStart %s/%s %08x:%d", logonId.c_str(), password.c_str(), to.address,
                          port[0] * 256 + port[1]));
        return startResult;
    }
    std::int32_t stop() override { return called("KSStop"); }
    std::int32_t close() override { return called("KSClose"); }
    void unload() override {
        called("unload");
        open = false;
    }
    std::int32_t createGroup(const KSGroupRecord& group) override { return called("KSCreateGroup ", group.groupId); }
    std::int32_t deleteGroup(std::uint32_t id) override { return called("KSDeleteGroup ", id); }
    std::int32_t getGroupMembers(std::uint32_t id) override { return called("KSGetGroupMembers ", id); }
    std::int32_t getMessages() override { return called("KSGetMessages"); }
    std::int32_t resendSettings() override { return called("KSResendSettings"); }
    std::int32_t createRoot(const std::string& path) override { return called("create " + path); }
    std::int32_t createKey(const std::string& path, bool create) override {
        return called((create ? "create " : "remove ") + path);
    }
    std::int32_t subscribe(const std::string& path) override { return called("subscribe " + path); }
    std::int32_t setText(const std::string& name, const std::string& text) override {
        return called(name + "='" + text + "'");
    }
    std::int32_t setDword(const std::string& name, std::uint32_t number) override { return called(name + "=", number); }
    std::int32_t createFile(KSGuid& created) override {
        created = newFile;
        return called("KSFileCreate");
    }
    std::int32_t readFile(const KSGuid& file) override { return called("KSFileRead " + formatGuid(file)); }
    std::int32_t writeFile(const KSGuid& file, std::string_view bytes) override {
        return called("KSFileWrite " + formatGuid(file).append(" ").append(bytes));
    }
    std::int32_t deleteFile(const KSGuid& file) override { return called("KSFileDelete " + formatGuid(file)); }

    bool open = true;
    StartResult startResult{0, true};
    KSGuid newFile{};
    std::string refused;                                  // calls that begin so fail
    std::function<void(const std::string& call)> onCall;  // runs inside each call

  private:
    std::int32_t called(const std::string& call) {
        journal_.add(call);
        if (onCall) onCall(call);
        return !refused.empty() && call.starts_with(refused) ? -1 : 0;
    }
    std::int32_t called(std::string call, std::uint32_t number) { return called(call += std::to_string(number)); }

    Journal& journal_;
};

}  // namespace orvc
