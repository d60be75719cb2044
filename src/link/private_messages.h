// The main window's private messages: what each carries, and who sends it.
//
// Every block is made by the event callback on the library's thread and freed by the user-interface thread after use.
// A block rides in lParam; see hand_over.h for how bursts of them travel.
//
// | message | sent for event        | wParam                | block                | handled by |
// |---------|-----------------------|-----------------------|----------------------|-------------------------------------|
// | 0x1400  | (tray icon)           | icon id 0x1400        | - (mouse message)    | main window: restore | | 0x1401  |
// 1, 9; sent and waited | socket                | ConnectionBlock      | session: new or re-connected device | | 0x1402
// | -                     | -                     | any                  | freed                               | |
// 0x1403  | 15                    | 0                     | none                 | session: server stop | | 0x1404  | -
// | -                     | any                  | freed                               | | 0x1405  | 80 | group id |
// GroupBlock           | directory: group information        | | 0x1406  | 81                    | group id |
// MemberBlock          | directory: group member             | | 0x1407  | 104                   | 0 | VariableBlock |
// variable store                      | | 0x1408  | 121                   | 0                     | FileDataBlock |
// file reader                         | | 0x1409  | 70                    | 0                     | QueueBlock |
// directory: new queue membership     | | 0x140A  | 71                    | 0                     | QueueBlock |
// directory: queue membership update  | | 0x140B  | 83                    | 0                     | ServerGroupBlock |
// directory: kept whole               | | 0x140C  | 99                    | 0                     | MessageBlock |
// directory: audio message            | | 0x1410  | 100, 101              | timer id              | TimerBlock |
// session: starts that timer          |
//
// 0x1410 is the console's own: the timer that answers event 100 or 101 is started behind everything that the library
// reported before it, on the thread that owns the window.
#pragma once

#include <cstdint>

namespace orvc::private_message {

inline constexpr std::uint32_t kTrayIcon = 0x1400;
inline constexpr std::uint32_t kNewIntercom = 0x1401;
inline constexpr std::uint32_t kUnused2 = 0x1402;
inline constexpr std::uint32_t kServerStop = 0x1403;
inline constexpr std::uint32_t kUnused4 = 0x1404;
inline constexpr std::uint32_t kGroupInformation = 0x1405;
inline constexpr std::uint32_t kGroupMember = 0x1406;
inline constexpr std::uint32_t kVariable = 0x1407;
inline constexpr std::uint32_t kFileData = 0x1408;
inline constexpr std::uint32_t kNewQueueMembership = 0x1409;
inline constexpr std::uint32_t kQueueMembershipUpdate = 0x140A;
inline constexpr std::uint32_t kServerGroup = 0x140B;
inline constexpr std::uint32_t kGroupMessage = 0x140C;
inline constexpr std::uint32_t kStartTimer = 0x1410;

// True for the messages that the hand-over delivers.
inline constexpr bool isHandedOver(std::uint32_t message) {
    return (message >= kNewIntercom && message <= kGroupMessage) || message == kStartTimer;
}

}  // namespace orvc::private_message
