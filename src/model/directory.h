// What the server has sent about its installation: devices, groups with their members, audio messages, call queues.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "link/ks_types.h"
#include "support/tracking_log.h"

namespace orvc {

// One intercom. A placeholder made for a group member that is not (yet) listed holds nothing but its MAC.
struct Device {
    KSConnectionInfo info;
    std::optional<KSExtraIntercomInfo> extra;
    std::int32_t socket = 0;
    bool connected = false;

    std::string_view name() const { return fieldText(info.deviceName); }
    const KSMac& mac() const { return info.mac; }
};

struct GroupMember {
    const Device* device = nullptr;       // a listed device, or the placeholder
    std::unique_ptr<Device> placeholder;  // set while the device is not listed
};

struct Group {
    KSGroupRecord record;
    std::list<GroupMember> members;  // newest first

    std::string_view key() const { return fieldText(record.key); }
};

// A server audio message.
struct AudioMessage {
    KSMessageRecord record;

    std::string_view name() const { return fieldText(record.name); }
    std::string_view key() const { return fieldText(record.key); }
};

// Who follows the directory. Called on the user-interface thread, after the change.
class DirectoryObserver {
  public:
    virtual ~DirectoryObserver() = default;
    // A device has come, has another name, or was connected or disconnected.
    virtual void deviceChanged(const Device& device) = 0;
    // A group has come, was sent again, or has got its first member.
    virtual void groupChanged(const Group& group) = 0;
    // An audio message has come or has another name.
    virtual void messageChanged(const AudioMessage& message) = 0;
    // Every list is empty.
    virtual void directoryCleared() = 0;
};

// Purpose: the lists that Events refer to, filled by the server's notifications.
// Thread: user-interface thread. Lookups take constant time.
// Lifetime: pointers and references stay valid until the record is removed by a clear...(); code that runs the message
// loop in between looks the record up again.
class Directory {
  public:
    explicit Directory(TrackingLog& log) : log_(log) {}

    // At most one; it outlives the directory or is taken away with null.
    void observe(DirectoryObserver* observer) { observer_ = observer; }

    // A new or re-connected intercom: found by its MAC and refreshed, or put at the head of the list.
    void updateDevice(const KSConnectionInfo& info, const std::optional<KSExtraIntercomInfo>& extra,
                      std::int32_t socket);
    // The intercom is not connected any more. It stays listed; nothing happens when it is not.
    void disconnectDevice(const KSMac& mac);
    // A group, new or sent again; its members are forgotten then.
    void updateGroup(const KSGroupRecord& record);
    void doNewGroupMember(std::uint32_t groupId, const KSMac& mac);
    void doNewGroupMessageInfo(const KSMessageRecord& record);
    void addQueueMembership(const KSQueueRecord& record);
    void updateQueueMembership(const KSQueueRecord& record);
    void addServerGroup(const KSServerGroupRecord& record) { serverGroups_.push_back(record); }

    // Points members with a placeholder to their device where it is listed by now.
    void resolvePlaceholders(Group& group) const;

    // Null when there is none.
    const Device* findDevice(const KSMac& mac) const;
    const Group* findGroup(std::string_view key) const;
    Group* findGroup(std::string_view key);
    const AudioMessage* findMessage(std::string_view key) const;

    // Newest first.
    const std::list<Device>& devices() const { return devices_; }
    const std::list<Group>& groups() const { return groups_; }
    const std::list<AudioMessage>& messages() const { return messages_; }

    // Empties every list.
    void clear();

  private:
    TrackingLog& log_;
    DirectoryObserver* observer_ = nullptr;
    std::list<Device> devices_;
    std::list<Group> groups_;
    std::list<AudioMessage> messages_;
    std::list<KSQueueRecord> queues_;
    std::vector<KSServerGroupRecord> serverGroups_;  // kept, never read
    std::unordered_map<std::uint64_t, Device*> devicesByMac_;
    std::unordered_map<std::string_view, Group*> groupsByKey_;  // keys view the records
    std::unordered_map<std::uint32_t, Group*> groupsById_;
    std::unordered_map<std::string_view, AudioMessage*> messagesByKey_;
    std::unordered_map<std::uint32_t, KSQueueRecord*> queuesById_;
};

}  // namespace orvc
