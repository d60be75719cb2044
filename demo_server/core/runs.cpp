#include "demo_server/core/runs.h"

namespace orvc::demo {
namespace {

constexpr std::uint32_t kConnectedStatus = 1;
constexpr std::size_t kFilePiece = 1000;

class SignalRun final : public Run {
  public:
    explicit SignalRun(std::uint32_t code) : code_(code) {}
    bool fill(Batch& batch, const Installation&, Millis) override {
        batch.add(code_);
        return true;
    }

  private:
    const std::uint32_t code_;
};

class TextRun final : public Run {
  public:
    TextRun(std::uint32_t code, std::string text) : code_(code), text_(std::move(text)) {}
    bool fill(Batch& batch, const Installation&, Millis) override {
        batch.addText(code_, text_);
        return true;
    }

  private:
    const std::uint32_t code_;
    const std::string text_;
};

class ServerTimeRun final : public Run {
  public:
    explicit ServerTimeRun(std::uint32_t utcSeconds) : utcSeconds_(utcSeconds) {}
    bool fill(Batch& batch, const Installation&, Millis) override {
        batch.addRecord(event_code::kServerTime, 0, utcSeconds_);
        return true;
    }

  private:
    const std::uint32_t utcSeconds_;
};

class ValueRun final : public Run {
  public:
    ValueRun(std::string name, std::uint32_t type, std::optional<std::string> text, std::uint32_t number)
        : name_(std::move(name)), type_(type), text_(std::move(text)), number_(number) {}
    bool fill(Batch& batch, const Installation&, Millis) override {
        if (text_) {
            batch.addString(name_, {}, type_, *text_);
        } else {
            batch.addDword(name_, {}, type_, number_);
        }
        return true;
    }

  private:
    const std::string name_;
    const std::uint32_t type_;
    const std::optional<std::string> text_;
    const std::uint32_t number_;
};

class RemovedRun final : public Run {
  public:
    explicit RemovedRun(std::vector<VariableTree::Removed> removed) : removed_(std::move(removed)) {}
    bool fill(Batch& batch, const Installation&, Millis) override {
        for (; next_ < removed_.size() && !batch.full(); ++next_) {
            batch.addName(removed_[next_].name, removed_[next_].type | variable_type::kDeleted);
        }
        return next_ == removed_.size();
    }

  private:
    const std::vector<VariableTree::Removed> removed_;
    std::size_t next_ = 0;
};

// One callback, or a few, for each item of one of the installation's lists.
template <typename Item>
class ListRun final : public Run {
  public:
    using Items = std::vector<Item> Installation::*;
    using Tell = void (*)(Batch&, const Item&, std::size_t index);

    ListRun(Items items, Tell tell) : items_(items), tell_(tell) {}
    bool fill(Batch& batch, const Installation& installation, Millis) override {
        const std::vector<Item>& items = installation.*items_;
        for (; next_ < items.size() && !batch.full(); ++next_)
            tell_(batch, items[next_], next_);
        return next_ >= items.size();
    }

  private:
    const Items items_;
    const Tell tell_;
    std::size_t next_ = 0;
};

void tellDevice(Batch& batch, const Device& device, std::size_t index) {
    KSConnectionInfo info;
    info.status = kConnectedStatus;
    setFieldText(info.deviceName, device.name);
    info.mac = device.mac;
    batch.addConnection(static_cast<std::int32_t>(index + 1), info, {});
}

void tellGroup(Batch& batch, const Group& group, std::size_t) {
    KSGroupRecord record;
    record.groupId = group.id;
    record.expectedMembers = static_cast<std::uint32_t>(group.members.size());
    setFieldText(record.key, group.key);
    const auto number = static_cast<std::int32_t>(group.id);
    batch.addRecord(event_code::kGroupInformation, number, record);
    batch.addRecord(event_code::kServerGroup, number, KSServerGroupRecord{});
}

void tellQueue(Batch& batch, const QueueMembership& queue, std::size_t) {
    KSQueueRecord record;
    record.identity = queue.id;
    record.overflowing = queue.overflowing;
    record.overflowState = queue.overflowState;
    record.attended = queue.attended;
    setFieldText(record.name, queue.name);
    batch.addRecord(event_code::kNewQueueMembership, 0, record);
}

void tellMessage(Batch& batch, const AudioMessage& message, std::size_t) {
    KSMessageRecord record;
    setFieldText(record.name, message.name);
    setFieldText(record.key, message.key);
    batch.addRecord(event_code::kGroupMessage, 0, record);
}

class MessagesRun final : public Run {
  public:
    bool fill(Batch& batch, const Installation& installation, Millis now) override {
        if (!list_.fill(batch, installation, now)) return false;
        batch.addRecord(event_code::kGroupMessage, 0, KSMessageRecord{});
        return true;
    }

  private:
    ListRun<AudioMessage> list_{&Installation::messages, tellMessage};
};

class MembersRun final : public Run {
  public:
    explicit MembersRun(std::uint32_t groupId) : groupId_(groupId) {}
    bool fill(Batch& batch, const Installation& installation, Millis) override {
        const Group* group = installation.findGroup(groupId_);
        if (!group) return true;
        for (; next_ < group->members.size() && !batch.full(); ++next_) {
            batch.addRecord(event_code::kGroupMember, static_cast<std::int32_t>(groupId_), group->members[next_]);
        }
        return next_ >= group->members.size();
    }

  private:
    const std::uint32_t groupId_;
    std::size_t next_ = 0;
};

class FileRun final : public Run {
  public:
    FileRun(const KSGuid& file, std::shared_ptr<const std::string> bytes) : file_(file), bytes_(std::move(bytes)) {}
    bool fill(Batch& batch, const Installation&, Millis) override {
        while (next_ < bytes_->size()) {
            if (batch.full()) return false;
            batch.addFileData(file_, std::string_view(*bytes_).substr(next_, kFilePiece));
            next_ += kFilePiece;
        }
        batch.addFileData(file_, {});
        return true;
    }

  private:
    const KSGuid file_;
    const std::shared_ptr<const std::string> bytes_;
    std::size_t next_ = 0;
};

}  // namespace

RunPointer makeSignalRun(std::uint32_t code) {
    return std::make_unique<SignalRun>(code);
}

RunPointer makeTextRun(std::uint32_t code, std::string text) {
    return std::make_unique<TextRun>(code, std::move(text));
}

RunPointer makeServerTimeRun(std::uint32_t utcSeconds) {
    return std::make_unique<ServerTimeRun>(utcSeconds);
}

RunPointer makeStringRun(std::string name, std::uint32_t type, std::string text) {
    return std::make_unique<ValueRun>(std::move(name), type, std::move(text), 0);
}

RunPointer makeDwordRun(std::string name, std::uint32_t type, std::uint32_t number) {
    return std::make_unique<ValueRun>(std::move(name), type, std::nullopt, number);
}

RunPointer makeKeyRun(std::string name, std::uint32_t type) {
    return makeDwordRun(std::move(name), type, 0);
}

RunPointer makeRemovedRun(std::vector<VariableTree::Removed> removed) {
    return std::make_unique<RemovedRun>(std::move(removed));
}

RunPointer makeDevicesRun() {
    return std::make_unique<ListRun<Device>>(&Installation::devices, tellDevice);
}

RunPointer makeGroupsRun() {
    return std::make_unique<ListRun<Group>>(&Installation::groups, tellGroup);
}

RunPointer makeQueuesRun() {
    return std::make_unique<ListRun<QueueMembership>>(&Installation::queues, tellQueue);
}

RunPointer makeMessagesRun() {
    return std::make_unique<MessagesRun>();
}

RunPointer makeMembersRun(std::uint32_t groupId) {
    return std::make_unique<MembersRun>(groupId);
}

RunPointer makeFileRun(const KSGuid& file, std::shared_ptr<const std::string> bytes) {
    return std::make_unique<FileRun>(file, std::move(bytes));
}

}  // namespace orvc::demo
