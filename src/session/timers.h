// The main window's timers.
#pragma once

#include <cstdint>

namespace orvc::timer {

// Periods are in milliseconds.
inline constexpr std::uintptr_t kLogon = 1;              // 250: doLogon
inline constexpr std::uintptr_t kIdle = 2;               // 1000: no action
inline constexpr std::uintptr_t kUnused = 3;             // only ever stopped
inline constexpr std::uintptr_t kSubscriptionStart = 4;  // 10, once
inline constexpr std::uintptr_t kReload = 5;             // 100, once
inline constexpr std::uintptr_t kReloadWait = 6;         // 100
inline constexpr std::uintptr_t kCompletionWait = 7;     // 1
inline constexpr std::uintptr_t kEventQueue = 8;         // 10: goes on with undelivered events
inline constexpr std::uintptr_t kMemberWait = 9;         // 100: waits for the members of groups
inline constexpr std::uintptr_t kGate = 10;              // 50: goes on with changes, waits for their echoes
inline constexpr std::uintptr_t kOverdue = 11;           // 1000: shows Events that stay incomplete
inline constexpr std::uintptr_t kEventCopy = 12;         // 50: waits for the payload file of an Event that is copied
inline constexpr std::uintptr_t kStatus = 13;            // 200: shows how far a command on many Events is
inline constexpr std::uintptr_t kLast = kStatus;

inline constexpr std::uint32_t kLogonPeriod = 250;
inline constexpr std::uint32_t kIdlePeriod = 1000;
inline constexpr std::uint32_t kSubscriptionStartPeriod = 10;
inline constexpr std::uint32_t kReloadPeriod = 100;
inline constexpr std::uint32_t kReloadWaitPeriod = 100;
inline constexpr std::uint32_t kCompletionWaitPeriod = 1;
inline constexpr std::uint32_t kEventQueuePeriod = 10;
inline constexpr std::uint32_t kMemberWaitPeriod = 100;
inline constexpr std::uint32_t kGatePeriod = 50;
inline constexpr std::uint32_t kOverduePeriod = 1000;
inline constexpr std::uint32_t kEventCopyPeriod = 50;
inline constexpr std::uint32_t kStatusPeriod = 200;

}  // namespace orvc::timer
