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
    std::string message(std::string_view name, std::string_view key) {
        KSMessageRecord record;
        setFieldText(record.name, name);
        setFieldText(record.key, key);
        directory_.doNewGroupMessageInfo(record);
        return journal_.take();
    }

    Journal journal_;
    JournalLog log_{journal_};
    Directory directory_{log_.log};
};

TEST_F(DirectoryTest, AReconnectedDeviceIsRefreshedInPlace) {
    KSExtraIntercomInfo extra{};
    extra[0] = 9;
    device(kDoor, "Door", extra);
    device(kGate, std::string(60, 'g'));
    const Device* const door = directory_.findDevice(kDoor);
    device(kDoor, "Front door", std::nullopt, -1);
    ASSERT_EQ(directory_.devices().size(), 2u);
    EXPECT_EQ(directory_.devices().front().name(), std::string(48, 'g')) << "newest first, name cut to its field";
    EXPECT_EQ(directory_.findDevice(kDoor), door);
    EXPECT_EQ(door->name(), "Front door");
    EXPECT_EQ(door->socket, -1);
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
    directory_.resolvePlaceholders(doors);
    EXPECT_EQ(doors.members.back().device->mac(), kDoor) << "not known yet";
    device(kDoor, "Door");
    directory_.resolvePlaceholders(doors);
    EXPECT_EQ(doors.members.back().device, directory_.findDevice(kDoor));
    EXPECT_EQ(doors.members.back().placeholder, nullptr);
}

TEST_F(DirectoryTest, AGroupToldAgainLosesItsMembersAndMayHaveAnotherId) {
    group(1, "A");
    group(2, std::string(70, 'k'));
    directory_.doNewGroupMember(1, kDoor);
    group(3, "A", 5);
    ASSERT_EQ(directory_.groups().size(), 2u);
    EXPECT_EQ(&directory_.groups().front(), directory_.findGroup(std::string(64, 'k')))
        << "newest first; the key fills its field";
    const Group& found = *directory_.findGroup("A");
    EXPECT_TRUE(found.members.empty() && found.record.expectedMembers == 5);
    directory_.doNewGroupMember(1, kDoor);
    EXPECT_TRUE(found.members.empty()) << "the old id is nobody's";
    directory_.doNewGroupMember(3, kDoor);
    EXPECT_EQ(found.members.size(), 1u);
    EXPECT_EQ(directory_.findGroup("a"), nullptr);
}

TEST_F(DirectoryTest, MessagesEndWithAnEmptyKey) {
    EXPECT_EQ(message("Fire 100%", "{1}"), "log: doNewGroupMessageInfo: new message received 'Fire 100%'");
    EXPECT_EQ(message("ignored", ""), "log: doNewGroupMessageInfo: End of messages received");
    EXPECT_EQ(directory_.messages().size(), 1u);
    EXPECT_EQ(directory_.findMessage("{1}")->name(), "Fire 100%");
    EXPECT_EQ(directory_.findMessage(""), nullptr);
}

TEST_F(DirectoryTest, QueueMembershipsAreLoggedByStateAndAttendance) {
    struct {
        std::uint32_t overflowing, state, attended;
        const char *flow, *attendance;
    } const rows[] = {{0, 1, 1, "", "Attended"},
                      {1, 1, 0, "Overflowing", "Unattended"},
                      {7, 3, 9, "Underflowing", "Attended"},  // from here on as updates
                      {0, 1, 0, "", "Unattended"},
                      {0, 2, 0, "Underflowing", "Unattended"},
                      {0, 1, 1, "Overflowing", "Attended"},
                      {0, 0, 1, "", "Attended"},
                      {1, 0, 1, "Underflowing", "Attended"}};
    for (const auto& row : rows) {
        KSQueueRecord record{
            .identity = 5, .overflowing = row.overflowing, .overflowState = row.state, .attended = row.attended};
        setFieldText(record.name, "Q");
        const bool isNew = &row < rows + 3;
        isNew ? directory_.addQueueMembership(record) : directory_.updateQueueMembership(record);
        const std::string flow =
            isNew ? "log: New Queue membership in 'Q' and is " : "log: Update Queue membership in Q and is ";
        const std::string attendance =
            isNew ? "log: New Queue Membership in Q is " : "log: Update Queue Membership in Q is ";
        EXPECT_EQ(journal_.take(), (*row.flow != 0 ? flow + row.flow + "; " : "") + attendance + row.attendance);
    }
}

TEST_F(DirectoryTest, ClearingForgetsEverything) {
    device(kDoor, "Door");
    group(1, "A");
    directory_.doNewGroupMember(1, kDoor);
    message("m", "{1}");
    directory_.updateQueueMembership({.identity = 5, .overflowState = 2});
    directory_.clear();
    journal_.take();
    EXPECT_TRUE(directory_.devices().empty() && directory_.groups().empty() && directory_.messages().empty());
    EXPECT_TRUE(!directory_.findDevice(kDoor) && !directory_.findGroup("A") && !directory_.findMessage("{1}"));
    directory_.doNewGroupMember(1, kDoor);
    directory_.updateQueueMembership({.identity = 5});
    EXPECT_EQ(journal_.take(), "log: Update Queue Membership in  is Unattended") << "the old state is forgotten";
}

}  // namespace
}  // namespace orvc
