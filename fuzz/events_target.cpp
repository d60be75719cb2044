// The library's events, each with data of exactly the size that it has, through the callback and the hand-over into a
// session.
#include <cstring>

#include "app/session.h"
#include "fake_server_link.h"
#include "fake_session_host.h"
#include "fuzz/silent_log.h"
#include "fuzz/view.h"

namespace orvc {
namespace {

// The window of a session: refuses posts as the input says, and handles at once what is sent.
struct Window final : WindowPoster {
    explicit Window(Input& from) : input(from) {}
    bool post(std::uint32_t, std::uintptr_t, std::intptr_t) override { return input.flag(); }
    bool send(std::uint32_t, std::uintptr_t, std::intptr_t) override {
        while (!session->deliverEvents()) {
        }
        return true;
    }
    void requestTimer() override {}

    Input& input;
    Session* session = nullptr;
};

class Run {
  public:
    explicit Run(Input& input) : input_(input), window_(input) {
        window_.session = &session_;
        EventCallback::makeCurrent(&session_.callback());
        session_.setConsoleMode(true);
        host_.outcome.success = true;
        // Members that do not come are waited for until the logon ends.
        host_.onWait = [this] {
            if (!input_.isEmpty())
                step();
            else
                event(event_code::kServerStop, 0);
            deliver();
        };
        session_.doLogon();
    }
    ~Run() { EventCallback::makeCurrent(nullptr); }

    void step() {
        const unsigned code = input_.byte();
        if (code == 0xFF) deliver();
        if (code == 0xFE) session_.onTimer(input_.byte() % 10);
        if (code == 0xFD) silent_.clock.seconds += input_.byte();
        if (code == 0xFC) session_.fileReader().expect(guid());
        if (code == 0xFB) session_.logoff();
        if (code < 0xFB) sendEvent(code);
    }
    void finish() {
        deliver();
        showEverything(session_.events(), session_.schedules(), session_.directory(), silent_.clock);
        // Some are left for the end to free.
        if (input_.flag()) event(event_code::kServerStop, 0);
        session_.doShutdown();
    }

  private:
    void event(std::uint32_t code, std::int32_t number, const void* connection = nullptr, const void* data = nullptr) {
        EventCallback::receive(code, number, connection, data);
    }
    void deliver() {
        while (!session_.deliverEvents()) {
        }
    }
    KSGuid guid() {
        KSGuid guid;
        guid.data1 = input_.byte() % 2;
        return guid;
    }
    template <typename Record>
    static Record read(const std::vector<char>& bytes) {
        Record record;
        std::memcpy(&record, bytes.data(), sizeof record);
        return record;
    }

    void sendEvent(std::uint32_t code) {
        const auto number = static_cast<std::int32_t>(input_.word());
        if (input_.byte() % 16 == 15) return event(code, number);  // without data
        switch (code) {
            case event_code::kNewConnection:
            case event_code::kReconnect:
                return sendConnection(code, number);
            case event_code::kVariable:
                return sendVariable();
            case event_code::kFileData:
                return sendFileData();
            case event_code::kNewQueueMembership:
            case event_code::kQueueMembershipUpdate:
                return sendBlock(code, number, sizeof(KSQueueRecord));
            case event_code::kGroupInformation:
                return sendGroup(number);
            case event_code::kGroupMember:
                return sendBlock(code, number, sizeof(KSMac));
            case event_code::kServerGroup:
                return sendBlock(code, number, sizeof(KSServerGroupRecord));
            case event_code::kGroupMessage:
                return sendMessage();
            case event_code::kServerTime:
                return sendBlock(code, number, sizeof(std::uint32_t));
            default: {
                const std::string text = input_.terminated();
                const std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);
                event(code, number, nullptr, exact.data());
            }
        }
    }
    void sendBlock(std::uint32_t code, std::int32_t number, std::size_t size) {
        event(code, number, nullptr, input_.block(size).data());
    }
    void sendConnection(std::uint32_t code, std::int32_t socket) {
        const std::vector<char> info = input_.block(sizeof(KSConnectionInfo));
        const std::vector<char> extra = input_.block(sizeof(KSExtraIntercomInfo));
        std::vector<KSWord> words{input_.byte() % 4};
        for (KSWord i = 0; i < words[0]; ++i)
            words.push_back(i == 0 && input_.flag() ? reinterpret_cast<KSWord>(extra.data()) : 0);
        words.shrink_to_fit();
        event(code, socket, info.data(), words.data());
        const auto sent = read<KSConnectionInfo>(info);
        const Device* device = session_.directory().findDevice(sent.mac);
        require(device != nullptr && device->connected && device->socket == socket, "a connected intercom is listed");
        require(device->name() == fieldText(sent.deviceName), "an intercom has its name");
    }
    void sendGroup(std::int32_t number) {
        const std::vector<char> bytes = input_.block(sizeof(KSGroupRecord));
        event(event_code::kGroupInformation, number, nullptr, bytes.data());
        deliver();
        const Group* group = session_.directory().findGroup(fieldText(read<KSGroupRecord>(bytes).key));
        require(group != nullptr && group->record.groupId == static_cast<std::uint32_t>(number), "a group is listed");
        require(group->members.empty(), "a group that is told again has no members");
    }
    void sendMessage() {
        const std::vector<char> bytes = input_.block(sizeof(KSMessageRecord));
        event(event_code::kGroupMessage, 0, nullptr, bytes.data());
        deliver();
        const auto sent = read<KSMessageRecord>(bytes);
        const std::string_view key = fieldText(sent.key);
        const AudioMessage* message = session_.directory().findMessage(key);
        require(key.empty() || (message != nullptr && message->name() == fieldText(sent.name)), "a message is listed");
    }
    void sendVariable() {
        const std::string name = input_.text();
        const std::string text = input_.text();
        KSVariableNotification variable;
        if (!input_.flag()) variable.name = name.c_str();
        variable.type = input_.word();
        if (!input_.flag()) variable.text = text.c_str();
        variable.number = input_.word();
        event(event_code::kVariable, 0, nullptr, &variable);
        deliver();
        const std::string_view sentName = variable.name != nullptr ? variable.name : "";
        const StoredVariable* stored = session_.store().getSystemVariable(sentName, variable.type);
        const bool isDeleted = (variable.type & variable_type::kDeleted) != 0;
        require((stored == nullptr) == isDeleted, "a variable is kept until it is deleted");
        if (stored == nullptr) return;
        require(stored->number == variable.number && stored->text().has_value() == (variable.text != nullptr) &&
                    (variable.text == nullptr || *stored->text() == variable.text),
                "a variable has the value that came last");
    }
    void sendFileData() {
        KSFileData file;
        file.file = guid();
        const std::vector<char> bytes = input_.block(input_.byte());
        file.byteCount = static_cast<std::uint32_t>(bytes.size());
        if (!input_.flag()) file.bytes = bytes.data();
        const std::string before = session_.fileReader().bytes();
        event(event_code::kFileData, 0, nullptr, &file);
        deliver();
        require(session_.fileReader().bytes().starts_with(before), "a file grows at its end");
    }

    Input& input_;
    SilentLog silent_;
    Journal journal_;
    FakeServerLink link_{journal_};
    FakeSessionHost host_{journal_};
    Settings settings_;
    Window window_;
    Session session_{host_,
                     link_,
                     window_,
                     silent_.log,
                     silent_.clock,
                     settings_,
                     [](std::string_view name) { return std::string(name); }};
};

}  // namespace
}  // namespace orvc

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvc::Input input(data, size);
    orvc::Run run(input);
    while (!input.isEmpty())
        run.step();
    run.finish();
    return 0;
}
