// The library's events, each with data of exactly the size that it has, through the callback and the event queue into a
// session; system variables above all, into the store and the records.
#include <array>
#include <cstring>

#include "fake_server_link.h"
#include "fake_session_host.h"
#include "fuzz/silent_log.h"
#include "fuzz/view.h"
#include "session/session.h"
#include "shown_events.h"

namespace orvc {
namespace {

constexpr std::array<std::string_view, 4> kParents{R"(\ORVS\Events\)", R"(\ORVS\Schedules\)", R"(\ORVS\)", "\\"};
constexpr std::array<std::string_view, 5> kKeys{"{E}", "{F}", "{Default}", "", "a\\b"};
std::vector<std::string_view> allFields() {
    std::vector<std::string_view> names{"Name",     "Key",      "Hours",       "CompleteBits", "userName",
                                        "password", "smtpHost", "defaultFrom", "smtpPort",     ""};
    for (const EventField& field : eventFields())
        names.emplace_back(field.name);
    return names;
}
const std::vector<std::string_view> kFields = allFields();
constexpr std::array<std::string_view, 4> kValues{"{E}", "{Default}", "02:4b:53:00:00:1a", "group"};

// The window of a session: refuses every third post, and handles at once what is sent.
struct Window final : WindowPoster {
    bool post(std::uint32_t, std::uintptr_t, std::intptr_t) override { return ++posts % 3 != 0; }
    bool send(std::uint32_t, std::uintptr_t, std::intptr_t) override {
        while (!session->deliverEvents()) {
        }
        return true;
    }
    void requestTimer() override {}

    unsigned posts = 0;
    Session* session = nullptr;
};

class Run {
  public:
    explicit Run(Input& input) : input_(input) {
        window_.session = &session_;
        EventCallback::makeCurrent(&session_.callback());
        session_.setConsoleMode(true);
        host_.outcome.success = true;
        host_.onWait = [this] {
            if (!input_.isEmpty()) step();
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
        if (code == 0xFA) deleteOrSaveEvent();
        if (code < 0xFA) sendEvent(code);
    }
    void finish() {
        deliver();
        showEverything(shown_.table, session_.schedules(), session_.directory());
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
    // What comes with an event that has a record of one size; 0 = any other.
    static std::size_t recordSize(std::uint32_t code) {
        switch (code) {
            case event_code::kNewQueueMembership:
            case event_code::kQueueMembershipUpdate:
                return sizeof(KSQueueRecord);
            case event_code::kGroupInformation:
                return sizeof(KSGroupRecord);
            case event_code::kGroupMember:
                return sizeof(KSMac);
            case event_code::kServerGroup:
                return sizeof(KSServerGroupRecord);
            case event_code::kGroupMessage:
                return sizeof(KSMessageRecord);
            case event_code::kServerTime:
                return sizeof(std::uint32_t);
            default:
                return 0;
        }
    }
    void sendEvent(std::uint32_t code) {
        const auto number = static_cast<std::int32_t>(input_.word());
        if (input_.byte() % 16 == 15) return event(code, number);  // without data
        if (code == event_code::kNewConnection || code == event_code::kReconnect) return sendConnection(code, number);
        if (code == event_code::kVariable) return sendVariable();
        if (code == event_code::kFileData) return sendFileData();
        std::vector<char> bytes = input_.block(recordSize(code));
        if (bytes.empty()) {
            const std::string text = input_.terminated();
            bytes.assign(text.c_str(), text.c_str() + text.size() + 1);
            bytes.shrink_to_fit();
        }
        event(code, number, nullptr, bytes.data());
    }
    void sendConnection(std::uint32_t code, std::int32_t socket) {
        const std::vector<char> bytes = input_.block(sizeof(KSConnectionInfo));
        const std::vector<char> extra = input_.block(sizeof(KSExtraIntercomInfo));
        std::vector<KSWord> words{input_.byte() % 4};
        if (words[0] > 0) words.push_back(input_.flag() ? reinterpret_cast<KSWord>(extra.data()) : 0);
        words.shrink_to_fit();
        event(code, socket, bytes.data(), words.data());
    }
    void sendVariable() {
        std::string name = input_.choose(kParents);
        name += input_.choose(kKeys);
        if (input_.flag()) name += '\\';
        name += input_.choose(kFields);
        const std::string text = input_.choose(kValues);
        KSVariableNotification variable;
        if (input_.byte() != 0xFF) variable.name = name.c_str();
        constexpr std::array types{variable_type::kString, variable_type::kDword, variable_type::kKey,
                                   variable_type::kString | variable_type::kDeleted};
        const std::size_t type = input_.byte() % 8;
        variable.type = type < types.size() ? types[type] : input_.word();
        if (input_.flag()) variable.text = text.c_str();
        variable.number = input_.flag() ? input_.byte() : input_.word();
        event(event_code::kVariable, 0, nullptr, &variable);
        deliver();
    }
    void sendFileData() {
        KSFileData file;
        file.file = guid();
        const std::vector<char> bytes = input_.block(input_.byte());
        file.byteCount = static_cast<std::uint32_t>(bytes.size());
        if (!input_.flag()) file.bytes = bytes.data();
        event(event_code::kFileData, 0, nullptr, &file);
    }

    void deleteOrSaveEvent() {
        const EventTable& table = shown_.table;
        if (table.size() == 0) return;
        const EventRecord record = table.model().at(input_.byte() % table.size());
        if (input_.flag()) {
            session_.apply({EventChange{record, std::nullopt, {}}});
            return;
        }
        EventRecord edited = editedUnchanged(record, session_.directory(), session_.schedules());
        edited.name = input_.terminated();
        session_.apply({EventChange{record, edited, {}}});
        if (const EventRecord* const saved = session_.events().find(record.key))
            require(table.model().contains(*saved), "a saved Event has its row");
    }

    Input& input_;
    SilentLog silent_;
    Journal journal_;
    FakeServerLink link_{journal_};
    FakeSessionHost host_{journal_};
    LocalSettings settings_;
    Window window_;
    ShownEvents shown_;
    Session session_{host_, link_, window_, silent_.log, silent_.clock, settings_, shown_.table};
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
