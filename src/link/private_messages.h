// The main window's private messages: what each carries, and who sends it.
//
// The event callback makes each event on the library's thread; the user-interface thread frees it after use. The
// message carries the event's address in lParam; event_queue.h says how bursts of them travel.
//
// clang-format off
// | message | sent for event | wParam       | event               | handled by                               |
// |---------|----------------|--------------|---------------------|------------------------------------------|
// | 0x1400  | (tray icon)    | icon id      | - (mouse message)   | tray icon: restore, menu                 |
// | 0x1401  | 1, 9           | socket       | ConnectionEvent     | directory: new or re-connected device    |
// | 0x1402  | -              | -            | any                 | freed                                    |
// | 0x1403  | 15             | 0            | StopEvent           | session: server stop                     |
// | 0x1404  | -              | -            | any                 | freed                                    |
// | 0x1405  | 80             | group id     | GroupEvent          | directory: group information             |
// | 0x1406  | 81             | group id     | MemberEvent         | directory: group member                  |
// | 0x1407  | 104            | 0            | VariableEvent       | variable store                           |
// | 0x1408  | 121            | 0            | FileDataEvent       | file reader                              |
// | 0x1409  | 70             | 0            | CallQueueEvent      | directory: new call-queue membership     |
// | 0x140A  | 71             | 0            | CallQueueEvent      | directory: call-queue membership update  |
// | 0x140B  | 83             | 0            | ServerGroupEvent    | directory: kept whole                    |
// | 0x140C  | 99             | 0            | AudioMessageEvent   | directory: audio message                 |
// | 0x1410  | 100, 101       | timer id     | TimerEvent          | session: starts that timer               |
// clang-format on
//
// 0x1401 is sent and waited for, the others are posted.
//
// 0x1410 is the console's own: the window's thread starts the timer that answers event 100 or 101, after everything
// that the library reported before.
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

// True for the messages that the event queue delivers.
inline constexpr bool isQueued(std::uint32_t message) {
    return (message >= kNewIntercom && message <= kGroupMessage) || message == kStartTimer;
}

}  // namespace orvc::private_message
