// What an Event shows, as numbers that are quick to search and to sort by.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "lists/event_columns.h"
#include "lists/text_pool.h"

namespace orvc {

// The columns whose texts Events share: all but the name and the time of the last Event.
inline constexpr std::array kSharedColumns{
    EventColumnId::kStatus,      EventColumnId::kResponse, EventColumnId::kTrigger,
    EventColumnId::kSource,      EventColumnId::kDelay,    EventColumnId::kSchedule,
    EventColumnId::kDestination, EventColumnId::kContent,  EventColumnId::kProblem,
};

// All but the name, which orders the list by itself.
struct EventValues {
    std::array<TextPool::Id, kSharedColumns.size()> texts{};  // in a TextPool
    std::uint32_t lastTriggered = 0;                          // seconds since 1970 UTC; 0 = never
    std::uint32_t delay = 0;                                  // seconds
    EventStatus status = EventStatus::kAvailable;
    bool hasProblem = false;
};

// The place in EventValues::texts of a column that is among the shared ones.
constexpr std::size_t sharedIndex(EventColumnId column) {
    return static_cast<std::size_t>(column) - (column > EventColumnId::kLastEvent ? 2 : 1);
}
static_assert([] {
    for (std::size_t i = 0; i < kSharedColumns.size(); ++i)
        if (sharedIndex(kSharedColumns[i]) != i) return false;
    return true;
}());

}  // namespace orvc
