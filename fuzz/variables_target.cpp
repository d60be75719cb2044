// Names and values of system variables through the store into the records, and the records' way to the server and back.
#include <array>
#include <map>

#include "fuzz/silent_log.h"
#include "fuzz/view.h"
#include "model/server_settings.h"

namespace orvc {
namespace {

// A server that tells every variable that is written to it back to others.
class EchoLink final : public ServerLink {
  public:
    bool isOpen() const override { return true; }
    StartResult start(const KSSocketAddress&, const std::string&, const std::string&) override { return {}; }
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
    std::int32_t setText(const std::string& name, const std::string& text) override {
        return tell({name, variable_type::kString, text, 0});
    }
    std::int32_t setDword(const std::string& name, std::uint32_t number) override {
        return tell({name, variable_type::kDword, std::nullopt, number});
    }
    std::int32_t createFile(KSGuid&) override { return 0; }
    std::int32_t readFile(const KSGuid&) override { return 0; }
    std::int32_t writeFile(const KSGuid&, std::string_view) override { return 0; }
    std::int32_t deleteFile(const KSGuid&) override { return 0; }

    VariableOwner* listener = nullptr;

  private:
    std::int32_t tell(const Variable& variable) {
        if (listener != nullptr) require(listener->updateVariable(variable), "what is written is ours");
        return 0;
    }
};

constexpr std::array<std::string_view, 4> kParents{R"(\ORVS\Events\)", R"(\ORVS\Schedules\)", R"(\ORVS\)", "\\"};
constexpr std::array<std::string_view, 5> kKeys{"{E}", "{F}", "{Default}", "", "a\\b"};
constexpr std::array<std::string_view, 29> kFields{"EventName",
                                                   "EventTriggerType",
                                                   "TriggerDeviceMAC",
                                                   "TriggerGroupKey",
                                                   "TriggerTimeOfDay",
                                                   "TriggerTimeoutType",
                                                   "TriggerTimeoutSeconds",
                                                   "ScheduleKey",
                                                   "EventResponseType",
                                                   "MessageKey",
                                                   "FileGUID",
                                                   "TtsFilename",
                                                   "ResponseDeviceMAC",
                                                   "ResponseGroupKey",
                                                   "completeBits",
                                                   "lastChecked",
                                                   "lastTriggered",
                                                   "Disabled",
                                                   "badData",
                                                   "Name",
                                                   "Key",
                                                   "Hours",
                                                   "CompleteBits",
                                                   "userName",
                                                   "password",
                                                   "smtpHost",
                                                   "defaultFrom",
                                                   "smtpPort",
                                                   ""};
constexpr std::array<std::string_view, 4> kValues{"{E}", "{Default}", "02:4b:53:00:00:1a", "group"};

class Run {
  public:
    explicit Run(Input& input) : input_(input) {
        store_.addOwner(events_);
        store_.addOwner(schedules_);
        store_.addOwner(settings_);
        KSConnectionInfo info{.mac = {0x02, 0x4B, 0x53, 0x00, 0x00, 0x1A}};
        directory_.updateDevice(info, std::nullopt, 1);
        KSGroupRecord group;
        setFieldText(group.key, "group");
        directory_.updateGroup(group);
    }

    void step() {
        switch (input_.byte() % 8) {
            case 0:
                return removeOrEdit();
            case 1:
                silent_.clock.seconds += input_.byte() * 10;
                return;
            case 2:
                if (input_.byte() == 0) clear();
                return;
            default:
                update();
        }
    }
    void finish() {
        require(store_.size() == known_.size(), "the store holds what was sent");
        for (const auto& [nameAndType, value] : known_) {
            const StoredVariable* stored = store_.getSystemVariable(nameAndType.first, nameAndType.second);
            require(stored != nullptr && stored->text() == value.first && stored->number == value.second,
                    "a variable has the value that came last");
        }
        showEverything(events_, schedules_, directory_, silent_.clock);
        for (std::size_t row = 0; row < events_.rows().size(); ++row)
            checkWrittenAndRead(events_.rows().at(row));
        for (const ScheduleRecord& record : schedules_.records())
            checkWrittenAndRead(record);
        checkWrittenAndRead(settings_);
    }

  private:
    void update() {
        const std::string name =
            input_.choose(kParents) + input_.choose(kKeys) + (input_.flag() ? "\\" : "") + input_.choose(kFields);
        const unsigned kind = input_.byte();
        const std::uint32_t type = (kind % 2 != 0 ? variable_type::kString : variable_type::kDword) |
                                   (kind % 16 == 0 ? variable_type::kDeleted : 0);
        const std::uint32_t number = input_.flag() ? input_.byte() : input_.word();
        std::optional<std::string> text;
        if (kind % 2 != 0) text = input_.choose(kValues);
        store_.doSystemVariableUpdate({name, type, text, number});
        const std::pair key(name, type & ~variable_type::kDeleted);
        if (kind % 16 == 0)
            known_.erase(key);
        else
            known_[key] = {text, number};
    }
    void removeOrEdit() {
        if (events_.rows().size() == 0) return;
        EventRecord& record = events_.rows().at(input_.byte() % events_.rows().size());
        if (input_.flag()) return events_.remove(record);
        EventRecord edited = editedUnchanged(record, directory_, schedules_);
        edited.name = input_.terminated();
        const EventRecord& stored = events_.store(edited);
        require(stored.hasRow && stored.name == edited.name, "a saved Event has its row");
    }
    void clear() {
        events_.clear();
        schedules_.clear();
        settings_.clear();
        store_.clear();
        known_.clear();
    }

    // What is absent is written as the server's own word for it.
    void checkWrittenAndRead(EventRecord& record) {
        EventList others(link_, directory_, silent_.log, silent_.clock, [](auto name) { return std::string(name); });
        link_.listener = &others;
        events_.write(record);
        link_.listener = nullptr;
        if (record.key.size() >= 128) return;
        const EventRecord* other = others.find(record.key);
        require(other != nullptr, "a written Event arrives");
        for (const EventField& field : eventFields())
            std::visit([&](auto member) { checkEqual(record.*member, other->*member); }, field.member);
    }
    template <typename T>
    static void checkEqual(const T& written, const T& read) {
        if constexpr (std::is_same_v<T, std::optional<std::string>>)
            require(written.value_or("") == read, "a written text arrives");
        else
            require(written == read || std::is_same_v<T, OptionalDword>, "a written value arrives");
    }
    void checkWrittenAndRead(const ScheduleRecord& record) {
        if (!record.key || record.key->find('\\') != std::string::npos || record.key->empty()) return;
        if (record.key->size() >= 128) return;
        ScheduleList others(link_, silent_.log, silent_.clock);
        link_.listener = &others;
        schedules_.write(record);
        link_.listener = nullptr;
        const ScheduleRecord* other = others.find(*record.key);
        require(other != nullptr && other->name == record.name.value_or("") &&
                    other->hours == record.hours.value_or(WeekMask{}) && other->complete == true,
                "a written Schedule arrives");
    }
    void checkWrittenAndRead(const ServerSettings& settings) {
        ServerSettings others;
        link_.listener = &others;
        settings.write(link_);
        link_.listener = nullptr;
        require(others.isComplete(silent_.clock, 0) && others.userName == settings.userName.value_or("") &&
                    others.password == settings.password.value_or("") &&
                    others.smtpHost == settings.smtpHost.value_or("") &&
                    others.defaultFrom == settings.defaultFrom.value_or("") &&
                    others.smtpPort == settings.smtpPort.value_or(25),
                "written settings arrive");
    }

    Input& input_;
    SilentLog silent_;
    EchoLink link_;
    Directory directory_{silent_.log};
    EventList events_{link_, directory_, silent_.log, silent_.clock, [](auto name) { return std::string(name); }};
    ScheduleList schedules_{link_, silent_.log, silent_.clock};
    ServerSettings settings_;
    VariableStore store_{silent_.log};
    std::map<std::pair<std::string, std::uint32_t>, std::pair<std::optional<std::string>, std::uint32_t>> known_;
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
