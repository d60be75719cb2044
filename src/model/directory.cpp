#include "model/directory.h"

#include <algorithm>

#include "model/mac.h"

namespace orvc {
namespace {

std::uint64_t macNumber(const KSMac& mac) {
    std::uint64_t number = 0;
    for (const std::uint8_t byte : mac)
        number = number << 8 | byte;
    return number;
}

template <typename Map, typename Key>
auto findIn(const Map& map, const Key& key) -> typename Map::mapped_type {
    const auto found = map.find(key);
    return found != map.end() ? found->second : nullptr;
}

// Overflow states: 1 is shown as overflowing; a change from or to 2 is always logged.
constexpr std::uint32_t kOverflowing = 1;
constexpr std::uint32_t kOverflowStateToReport = 2;

const char* overflowText(const KSQueueRecord& record) {
    return record.overflowState == kOverflowing ? "Overflowing" : "Underflowing";
}

const char* attendedText(const KSQueueRecord& record) {
    return record.attended != 0 ? "Attended" : "Unattended";
}

}  // namespace

void Directory::updateDevice(const KSConnectionInfo& info, const std::optional<KSExtraIntercomInfo>& extra,
                             std::int32_t socket) {
    Device*& device = devicesByMac_[macNumber(info.mac)];
    if (device == nullptr) device = &devices_.emplace_front();
    const bool isSeen = !device->connected || device->name() != fieldText(info.deviceName);
    device->info = info;
    if (extra) device->extra = extra;
    device->connected = true;
    device->socket = socket;
    if (isSeen && observer_ != nullptr) observer_->deviceChanged(*device);
}

void Directory::disconnectDevice(const KSMac& mac) {
    Device* const device = findIn(devicesByMac_, macNumber(mac));
    if (device == nullptr || !device->connected) return;
    device->connected = false;
    if (observer_ != nullptr) observer_->deviceChanged(*device);
}

void Directory::updateGroup(const KSGroupRecord& record) {
    // Added to the list last, when nothing can fail.
    Group*& byId = groupsById_[record.groupId];
    Group* group = findGroup(fieldText(record.key));
    if (group == nullptr) {
        std::list<Group> made(1);
        group = &made.front();
        group->record = record;
        groupsByKey_.try_emplace(group->key(), group);
        groups_.splice(groups_.begin(), made);
    } else {
        group->members.clear();
        const std::uint32_t oldId = group->record.groupId;
        if (oldId != record.groupId && findIn(groupsById_, oldId) == group) groupsById_.erase(oldId);
        group->record = record;
    }
    byId = group;
    if (observer_ != nullptr) observer_->groupChanged(*group);
}

void Directory::doNewGroupMember(std::uint32_t groupId, const KSMac& mac) {
    Group* const group = findIn(groupsById_, groupId);
    if (group == nullptr) return;
    GroupMember member;
    member.device = findDevice(mac);
    if (member.device == nullptr) {
        log_.log("doNewGroupMember: MAC address %s not found", formatMac(mac).c_str());
        member.placeholder = std::make_unique<Device>();
        member.placeholder->info.mac = mac;
        member.device = member.placeholder.get();
    }
    group->members.push_front(std::move(member));
    if (group->members.size() == 1 && observer_ != nullptr) observer_->groupChanged(*group);
}

void Directory::resolvePlaceholders(Group& group) const {
    for (GroupMember& member : group.members) {
        if (member.placeholder == nullptr) continue;
        const Device* const device = findDevice(member.placeholder->mac());
        if (device == nullptr) continue;
        member.device = device;
        member.placeholder.reset();
    }
}

void Directory::doNewGroupMessageInfo(const KSMessageRecord& record) {
    const std::string_view name = fieldText(record.name);
    if (fieldText(record.key).empty()) {
        log_.log("doNewGroupMessageInfo: End of messages received");
        return;
    }
    log_.log("doNewGroupMessageInfo: new message received '%.*s'", static_cast<int>(name.size()), name.data());
    // One entry per key, however often the server sends it; the newest first.
    if (AudioMessage* const known = findIn(messagesByKey_, fieldText(record.key))) {
        known->record = record;  // the index views the key, which is the same
        const auto listed = std::ranges::find_if(messages_, [&](const AudioMessage& m) { return &m == known; });
        messages_.splice(messages_.begin(), messages_, listed);
        if (observer_ != nullptr) observer_->messageChanged(*known);
        return;
    }
    std::list<AudioMessage> made(1);
    AudioMessage& message = made.front();
    message.record = record;
    messagesByKey_.try_emplace(message.key(), &message);
    messages_.splice(messages_.begin(), made);
    if (observer_ != nullptr) observer_->messageChanged(message);
}

void Directory::addQueueMembership(const KSQueueRecord& record) {
    KSQueueRecord*& queue = queuesById_[record.identity];
    if (queue == nullptr) queue = &queues_.emplace_front();
    *queue = record;
    const std::string name(fieldText(record.name));
    if (record.overflowing != 0) log_.log("New Queue membership in '%s' and is %s", name.c_str(), overflowText(record));
    log_.log("New Queue Membership in %s is %s", name.c_str(), attendedText(record));
}

void Directory::updateQueueMembership(const KSQueueRecord& record) {
    KSQueueRecord*& queue = queuesById_[record.identity];
    if (queue == nullptr) queue = &queues_.emplace_front();
    const std::uint32_t oldState = queue->overflowState;
    *queue = record;
    const std::string name(fieldText(record.name));
    if (record.overflowing != 0 || oldState == kOverflowStateToReport || record.overflowState == kOverflowStateToReport)
        log_.log("Update Queue membership in %s and is %s", name.c_str(), overflowText(record));
    log_.log("Update Queue Membership in %s is %s", name.c_str(), attendedText(record));
}

const Device* Directory::findDevice(const KSMac& mac) const {
    return findIn(devicesByMac_, macNumber(mac));
}

const Group* Directory::findGroup(std::string_view key) const {
    return findIn(groupsByKey_, key);
}

Group* Directory::findGroup(std::string_view key) {
    return findIn(groupsByKey_, key);
}

const AudioMessage* Directory::findMessage(std::string_view key) const {
    return findIn(messagesByKey_, key);
}

void Directory::clear() {
    devicesByMac_.clear();
    groupsByKey_.clear();
    groupsById_.clear();
    messagesByKey_.clear();
    queuesById_.clear();
    devices_.clear();
    groups_.clear();
    messages_.clear();
    queues_.clear();
    serverGroups_.clear();
    if (observer_ != nullptr) observer_->directoryCleared();
}

}  // namespace orvc
