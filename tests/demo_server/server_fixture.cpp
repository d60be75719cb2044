#include "server_fixture.h"

#include <cstring>

#include "demo_server/core/text_codec.h"

namespace orvc::demo {
namespace {

template <typename Record>
Record read(const void* data) {
    Record record;
    std::memcpy(&record, data, sizeof record);
    return record;
}

std::string hex(std::uint32_t word) {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", word);
    return text;
}

std::string describeVariable(const void* data) {
    const auto variable = read<KSVariableNotification>(data);
    std::string line(variable.name);
    line += " " + hex(variable.type);
    if (variable.text) return line + " '" + variable.text + "'";
    return line + " " + std::to_string(variable.number);
}

std::string describeConnection(const void* connection, const void* data) {
    const auto info = read<KSConnectionInfo>(connection);
    const auto* words = static_cast<const KSWord*>(data);
    KSExtraIntercomInfo extra;
    std::memcpy(extra.data(), reinterpret_cast<const void*>(words[1]), extra.size());  // must be readable
    return macText(info.mac) + " '" + std::string(fieldText(info.deviceName)) + "' n=" + std::to_string(words[0]);
}

std::string describeRecord(std::uint32_t code, const void* data) {
    switch (code) {
        case event_code::kServerTime:
            return std::to_string(read<std::uint32_t>(data));
        case event_code::kGroupInformation: {
            const auto group = read<KSGroupRecord>(data);
            return std::string(fieldText(group.key)) + " members=" + std::to_string(group.expectedMembers);
        }
        case event_code::kGroupMember:
            return macText(read<KSMac>(data));
        case event_code::kServerGroup:
            return std::to_string(read<KSServerGroupRecord>(data).size()) + " bytes";
        case event_code::kNewQueueMembership:
            return std::string(fieldText(read<KSQueueRecord>(data).name));
        case event_code::kGroupMessage: {
            const auto message = read<KSMessageRecord>(data);
            return std::string(fieldText(message.key)) + "=" + std::string(fieldText(message.name));
        }
        case event_code::kFileData: {
            const auto file = read<KSFileData>(data);
            return guidText(file.file) + " " + std::string(static_cast<const char*>(file.bytes), file.byteCount);
        }
        default:
            return static_cast<const char*>(data);
    }
}

}  // namespace

std::string describeEvent(std::uint32_t code, std::int32_t number, const void* connection, const void* data) {
    std::string line = std::to_string(code);
    if (number != 0) line += "#" + std::to_string(number);
    if (code == event_code::kVariable) return line + " " + describeVariable(data);
    if (connection) return line + " " + describeConnection(connection, data);
    return data ? line + " " + describeRecord(code, data) : line;
}

Server& ServerFixture::makeServer(Installation installation, std::string_view options) {
    server_ =
        std::make_unique<Server>(std::move(installation), parseOptions(options), std::vector<std::string>{}, host_);
    return *server_;
}

std::int32_t ServerFixture::logOn(std::string_view name, std::string_view password, std::array<std::uint8_t, 4> address,
                                  std::uint16_t family) {
    KSSocketAddress server;
    server.family = family;
    std::memcpy(&server.address, address.data(), address.size());
    return server_->start(server, name, password, isAdmin_);
}

void ServerFixture::logOnQuietly() {
    ASSERT_EQ(logOn(), logon_result::kSuccess);
    drain();
}

std::vector<std::string> ServerFixture::drain() {
    std::vector<std::string> lines;
    Batch batch;
    for (server_->takeBatch(batch); !batch.empty(); server_->takeBatch(batch)) {
        const auto callback = [&](std::uint32_t code, std::int32_t number, const void* connection, const void* data) {
            lines.push_back(describeEvent(code, number, connection, data));
        };
        batch.deliver(callback, [&] { return server_->generation() == batch.generation; });
    }
    return lines;
}

std::vector<std::string> ServerFixture::pass(Millis millis, Millis step) {
    std::vector<std::string> lines;
    for (const Millis end = host_.now + millis; host_.now < end;) {
        host_.now += step;
        for (std::string& line : drain())
            lines.push_back(std::move(line));
    }
    return lines;
}

Installation makeSmallInstallation() {
    Installation installation;
    installation.users = defaultUsers();
    installation.devices = {{{2, 0, 0, 0, 0, 1}, "Door"}, {{2, 0, 0, 0, 0, 2}, ""}};
    installation.groups = {{7, "Both", {{2, 0, 0, 0, 0, 1}, {2, 0, 0, 0, 0, 2}}}};
    installation.messages = {{"chime", "Three tones"}};
    installation.queues = {{1, true, 1, false, "Reception"}};
    VariableTree::Key& root = installation.variables.createKey("\\ORVS");
    installation.variables.setDword(root, "completeBits", 1);
    installation.variables.setString(root, "userName", "");
    installation.variables.setString("\\ORVS\\Schedules\\{1}\\Name", "Nights");
    VariableTree::Key& event = installation.variables.createKey("\\ORVS\\Events\\{A}");
    installation.variables.setString(event, "EventName", "Front door");
    installation.variables.setDword(event, "EventTriggerType", 1);
    installation.variables.setDword(event, "Disabled", 0);
    installation.variables.setDword(event, "completeBits", 1);
    return installation;
}

}  // namespace orvc::demo
