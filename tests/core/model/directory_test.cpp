#include "model/directory.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"

namespace orvc {
namespace {

constexpr KSMac kDoor{0x02, 0x4B, 0x53, 0, 0, 0x1A};
constexpr KSMac kGate{0x02, 0x4B, 0x53, 0, 0, 0x1B};

class DirectoryTest : public ::testing::Test {
  protected:
    void device(const KSMac& mac, std::string_view name, std::optional<KSExtraIntercomInfo> extra = std::nullopt,
                int socket = 1) {
        KSConnectionInfo info{.mac = mac};
        setFieldText(info.deviceName, name);
        directory_.updateDevice(info, extra, socket);
    }
    void group(std::uint32_t id, std::string_view key, std::uint32_t members = 0) {
        KSGroupRecord record{.groupId = id, .expectedMembers = members};
        setFieldText(record.key, key);
        directory_.updateGroup(record);
    }
    Journal journal_;
    JournalLog log_{journal_};
    Directory directory_{log_.log};
};

TEST_F(DirectoryTest, AReconnectedDeviceIsRefreshedInPlace) {
    KSExtraIntercomInfo extra{};
    extra[0] = 9;
    device(kDoor, "Door", extra);
    device(kGate, "Gate");
    const Device* const door = directory_.findDevice(kDoor);
    device(kDoor, "Front door", std::nullopt, -1);
    ASSERT_EQ(directory_.devices().size(), 2u);
    EXPECT_EQ(directory_.devices().front().name(), "Gate") << "newest first";
    EXPECT_EQ(directory_.findDevice(kDoor), door);
    EXPECT_EQ(door->name(), "Front door");
    EXPECT_EQ(door->extra->at(0), 9) << "kept when the event brings none";
}

TEST_F(DirectoryTest, MembersThatComeBeforeTheirDevicesHavePlaceholders) {
    device(kGate, "Gate");
    group(7, "Doors", 2);
    directory_.doNewGroupMember(7, kDoor);
    EXPECT_EQ(journal_.take(), "log: doNewGroupMember: MAC address 02:4b:53:00:00:1a not found");
    directory_.doNewGroupMember(7, kGate);
    directory_.doNewGroupMember(8, kGate);  // no such group
    EXPECT_EQ(journal_.take(), "");
    Group& doors = *directory_.findGroup("Doors");
    ASSERT_EQ(doors.members.size(), 2u);
    EXPECT_EQ(doors.members.front().device, directory_.findDevice(kGate));
    device(kDoor, "Door");
    directory_.resolvePlaceholders(doors);
    EXPECT_EQ(doors.members.back().device, directory_.findDevice(kDoor));
    EXPECT_EQ(doors.members.back().placeholder, nullptr);
}

TEST_F(DirectoryTest, AGroupToldAgainLosesItsMembersAndMayHaveAnotherId) {
    group(1, "A");
    directory_.doNewGroupMember(1, kDoor);
    group(3, "A", 5);
    ASSERT_EQ(directory_.groups().size(), 1u);
    const Group& found = *directory_.findGroup("A");
    EXPECT_TRUE(found.members.empty() && found.record.expectedMembers == 5);
    directory_.doNewGroupMember(1, kDoor);
    EXPECT_TRUE(found.members.empty()) << "the old id is nobody's";
    directory_.doNewGroupMember(3, kDoor);
    EXPECT_EQ(found.members.size(), 1u);
}

TEST_F(DirectoryTest, AnAudioMessageIsOneEntryHoweverOftenItIsSent) {
    const auto message = [this](std::string_view name, std::string_view key) {
        KSMessageRecord record{};
        setFieldText(record.name, name);
        setFieldText(record.key, key);
        directory_.doNewGroupMessageInfo(record);
    };
    message("Chime", "c");
    message("Fire", "f");
    message("Chime, renamed", "c");
    message("End", "");
    ASSERT_EQ(directory_.messages().size(), 2u);
    EXPECT_EQ(directory_.messages().front().name(), "Chime, renamed") << "newest first";
    EXPECT_EQ(directory_.findMessage("c")->name(), "Chime, renamed");
    EXPECT_EQ(directory_.findMessage("f")->name(), "Fire");
}

TEST_F(DirectoryTest, ACallQueuesOverflowIsLoggedFromItsBeginningToItsEnd) {
    const auto queue = [this](bool isNew, std::uint32_t overflowing, std::uint32_t state, std::uint32_t attended) {
        KSQueueRecord record{.identity = 7, .overflowing = overflowing, .overflowState = state, .attended = attended};
        setFieldText(record.name, "Ward");
        if (isNew)
            directory_.addQueueMembership(record);
        else
            directory_.updateQueueMembership(record);
        return journal_.take();
    };
    EXPECT_EQ(queue(true, 0, 0, 1), "log: New Queue Membership in Ward is Attended");
    EXPECT_EQ(
        queue(true, 1, 1, 0),
        "log: New Queue membership in 'Ward' and is Overflowing; log: New Queue Membership in Ward is Unattended");
    EXPECT_EQ(queue(false, 0, 2, 1),
              "log: Update Queue membership in Ward and is Underflowing; log: Update Queue Membership in Ward is "
              "Attended");
    EXPECT_EQ(queue(false, 0, 0, 1),
              "log: Update Queue membership in Ward and is Underflowing; log: Update Queue Membership in Ward is "
              "Attended")
        << "the end";
    EXPECT_EQ(queue(false, 0, 0, 1), "log: Update Queue Membership in Ward is Attended");
    directory_.clear();
    EXPECT_EQ(queue(false, 0, 0, 0), "log: Update Queue Membership in Ward is Unattended") << "nothing is left of it";
}

}  // namespace
}  // namespace orvc
