// What the demo server serves: one building with its stations, groups, messages, variables and files.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "demo_server/core/guid.h"
#include "demo_server/core/variable_tree.h"
#include "link/ks_types.h"

namespace orvc::demo {

struct User {
    std::string name;
    std::string password;
    bool isAdmin = false;
};

struct Device {
    KSMac mac{};
    std::string name;
};

struct Group {
    std::uint32_t id = 0;
    std::string key;  // also the name that lists show
    std::vector<KSMac> members;
};

struct AudioMessage {
    std::string key;
    std::string name;
};

struct QueueMembership {
    std::uint32_t id = 0;
    bool overflowing = false;
    std::uint32_t overflowState = 0;
    bool attended = false;
    std::string name;
};

// A plain value; it can be moved, and copied for tests.
struct Installation {
    // A file's bytes are replaced, never changed, so that a read under way keeps the ones it began with.
    using Files = std::map<KSGuid, std::shared_ptr<const std::string>, GuidLess>;

    std::vector<User> users;
    std::vector<Device> devices;
    std::vector<Group> groups;
    std::vector<AudioMessage> messages;
    std::vector<QueueMembership> queues;
    VariableTree variables;
    Files files;

    void storeFile(const KSGuid& guid, std::string bytes) {
        files[guid] = std::make_shared<const std::string>(std::move(bytes));
    }
    const Group* findGroup(std::uint32_t id) const {
        for (const Group& group : groups) {
            if (group.id == id) return &group;
        }
        return nullptr;
    }
};

}  // namespace orvc::demo
