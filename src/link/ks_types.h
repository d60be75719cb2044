// The binary types that KSPassThru.dll and the console exchange.
//
// The library is 32-bit Windows code: every word and pointer has 32 bits, texts are 8-bit and zero-terminated, and no
// record is padded. The same declarations compile natively, where the tests run; there a pointer, and so each word that
// may carry one, is wider, and the offsets that depend on it are not checked.
//
// Text fields inside fixed-size records may fill their field without a terminating zero: read them with fieldText().
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef _WIN32
#define KS_CALL __stdcall
#else
#define KS_CALL
#endif

namespace orvc {

// A word that may carry a pointer: 32 bits wherever the library itself runs.
using KSWord = std::uintptr_t;

// A GUID as the library passes it, by value as four 32-bit words or by pointer.
struct KSGuid {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::array<std::uint8_t, 8> data4{};

    friend bool operator==(const KSGuid&, const KSGuid&) = default;
};
static_assert(sizeof(KSGuid) == 16);

// An IPv4 socket address; port and address are in network byte order.
struct KSSocketAddress {
    std::uint16_t family = 2;
    std::uint16_t port = 0;
    std::uint32_t address = 0;
    std::array<std::uint8_t, 8> zero{};
};
static_assert(sizeof(KSSocketAddress) == 16);

// Six bytes, in the order in which the text form shows them.
using KSMac = std::array<std::uint8_t, 6>;

// What events 1 and 9 point to. The library keeps it valid only until the callback returns.
struct KSConnectionInfo {
    std::array<std::uint8_t, 4> opaque0{};
    std::uint32_t status = 0;
    std::array<char, 48> deviceName{};
    KSMac mac{};
    std::array<std::uint8_t, 70> opaque62{};
};
static_assert(sizeof(KSConnectionInfo) == 132 && offsetof(KSConnectionInfo, status) == 4 &&
              offsetof(KSConnectionInfo, deviceName) == 8 && offsetof(KSConnectionInfo, mac) == 56);

// The block that word 1 of events 1 and 9 points to: copied whole, kept, never read.
using KSExtraIntercomInfo = std::array<std::uint8_t, 120>;

// A group; its key is also the name that lists show.
struct KSGroupRecord {
    std::uint32_t groupId = 0;
    std::uint32_t expectedMembers = 0;
    std::array<char, 64> key{};
    std::array<std::uint8_t, 160> opaque72{};
};
static_assert(sizeof(KSGroupRecord) == 232 && offsetof(KSGroupRecord, key) == 8);

// A server audio message. An empty key marks the end of the messages.
struct KSMessageRecord {
    std::array<char, 128> name{};
    std::array<char, 64> key{};
    std::array<std::uint8_t, 16> opaque192{};
};
static_assert(sizeof(KSMessageRecord) == 208 && offsetof(KSMessageRecord, key) == 128);

// A call-queue membership. Overflow state 1 is shown as "Overflowing", every other value as "Underflowing".
struct KSQueueRecord {
    std::uint32_t identity = 0;
    std::uint32_t overflowing = 0;
    std::uint32_t overflowState = 0;
    std::uint32_t attended = 0;
    std::array<char, 64> name{};
    std::array<std::uint8_t, 40> opaque80{};
};
static_assert(sizeof(KSQueueRecord) == 120 && offsetof(KSQueueRecord, name) == 16);

// What event 83 delivers: copied whole, kept, never read.
using KSServerGroupRecord = std::array<std::uint8_t, 104>;

// What event 104 delivers. `text` is null when the variable has no string value.
struct KSVariableNotification {
    const char* name = nullptr;
    std::uint32_t type = 0;
    const char* text = nullptr;
    std::uint32_t number = 0;
};
static_assert(sizeof(void*) != 4 || sizeof(KSVariableNotification) == 16);

// What event 121 delivers. A byte count of zero says that the file is complete.
struct KSFileData {
    KSGuid file;
    std::uint32_t opaque16 = 0;
    const void* bytes = nullptr;
    std::uint32_t byteCount = 0;
};
static_assert(sizeof(void*) != 4 || (sizeof(KSFileData) == 28 && offsetof(KSFileData, bytes) == 20));

// Type words of system variables.
namespace variable_type {
inline constexpr std::uint32_t kFromConsole = 0x80000000;  // set in every type word that the console sends
inline constexpr std::uint32_t kValue = 0x40000000;        // the item is a value; when clear, a key
inline constexpr std::uint32_t kDeleted = 0x01000000;      // in a notification: deleted on the server
inline constexpr std::uint32_t kKindMask = 0x0000FFFF;
inline constexpr std::uint32_t kStringKind = 1;
inline constexpr std::uint32_t kDwordKind = 4;
inline constexpr std::uint32_t kKey = kFromConsole;
inline constexpr std::uint32_t kString = kFromConsole | kValue | kStringKind;
inline constexpr std::uint32_t kDword = kFromConsole | kValue | kDwordKind;
}  // namespace variable_type

// Event codes that the console acts upon or that a server sends.
namespace event_code {
inline constexpr std::uint32_t kText = 0;
inline constexpr std::uint32_t kNewConnection = 1;
inline constexpr std::uint32_t kIntercomError = 3;
inline constexpr std::uint32_t kAudioHighMark = 5;
inline constexpr std::uint32_t kReconnect = 9;
inline constexpr std::uint32_t kGpioStateChange = 11;
inline constexpr std::uint32_t kServerStop = 15;
inline constexpr std::uint32_t kUserConnected = 30;
inline constexpr std::uint32_t kUserDisconnected = 31;
inline constexpr std::uint32_t kServerTime = 32;
inline constexpr std::uint32_t kNewQueueMembership = 70;
inline constexpr std::uint32_t kQueueMembershipUpdate = 71;
inline constexpr std::uint32_t kGroupInformation = 80;
inline constexpr std::uint32_t kGroupMember = 81;
inline constexpr std::uint32_t kServerGroup = 83;
inline constexpr std::uint32_t kGroupMessage = 99;
inline constexpr std::uint32_t kInitializationComplete = 100;
inline constexpr std::uint32_t kSettingsUpdate = 101;
inline constexpr std::uint32_t kVariable = 104;
inline constexpr std::uint32_t kFileData = 121;
inline constexpr std::uint32_t kFirstUnknown = 122;
}  // namespace event_code

// Result codes of KSStart; 0 is success.
namespace logon_result {
inline constexpr std::int32_t kSuccess = 0;
inline constexpr std::int32_t kServerNotFound = -2;
inline constexpr std::int32_t kTimedOut = -5;
inline constexpr std::int32_t kInvalidOrAlreadyLoggedIn = -8;
inline constexpr std::int32_t kIncompatibleVersion = -9;
inline constexpr std::int32_t kInvalid = -30;
inline constexpr std::int32_t kAlreadyLoggedIn = -31;
}  // namespace logon_result

// Bit 0 of the open flags that KSOpen returns: the console logs on to a server. Clear: it runs stand-alone.
inline constexpr std::uint32_t kConsoleModeFlag = 1;

// The text of a fixed-size field, up to its terminator or to the field's end.
template <std::size_t N>
std::string_view fieldText(const std::array<char, N>& field) {
    const void* end = std::memchr(field.data(), 0, N);
    return {field.data(), end ? static_cast<std::size_t>(static_cast<const char*>(end) - field.data()) : N};
}

// Copies `text` into a fixed-size field, cut to the field's size and zero-filled behind.
template <std::size_t N>
void setFieldText(std::array<char, N>& field, std::string_view text) {
    field.fill(0);
    std::memcpy(field.data(), text.data(), text.size() < N ? text.size() : N);
}

// The library calls this on one thread of its own, one call at a time, from the moment KSOpen has the pointer until
// KSClose returns. The receiver copies what it needs before it returns.
using KSEventCallback = void(KS_CALL*)(std::uint32_t code, std::int32_t number, const void* connection,
                                       const void* data);

}  // namespace orvc
