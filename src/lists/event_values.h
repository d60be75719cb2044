// What an Event shows, as numbers that are quick to search and to sort by.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "lists/event_columns.h"
#include "lists/text_pool.h"

namespace orvc {

// All columns but the name, which orders the list by itself.
struct EventValues {
    // Of each column in a TextPool; unused for the name and the time of the last Event, which hardly two Events share.
    std::array<TextPool::Id, kEventColumnCount> texts{};
    std::uint32_t lastTriggered = 0;  // seconds since 1970 UTC; 0 = never
    std::uint32_t delay = 0;          // seconds
    EventStatus status = EventStatus::kAvailable;
    bool hasProblem = false;
};

// Whether a column's text is in the pool.
inline bool isPooled(std::size_t column) {
    return column != static_cast<std::size_t>(EventColumnId::kName) &&
           column != static_cast<std::size_t>(EventColumnId::kLastEvent);
}

}  // namespace orvc
