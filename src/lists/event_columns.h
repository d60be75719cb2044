// The columns of the Event list and what stands in them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "model/directory.h"
#include "model/event_record.h"
#include "model/schedule_list.h"
#include "support/clock.h"
#include "support/string_table.h"

namespace orvc {

// In the order of eventColumns().
enum class EventColumnId : std::size_t {
    kName,
    kStatus,
    kLastEvent,
    kResponse,
    kTrigger,
    kSource,
    kDelay,
    kSchedule,
    kDestination,
    kContent,
    kProblem,
};
inline constexpr std::size_t kEventColumnCount = 11;
// The first columns; they are shown until the operator chooses others.
inline constexpr std::size_t kGivenColumnCount = 4;

// What the texts of an Event are made from. All that is pointed to or referred to outlives its use; what is null or
// empty is not asked.
struct EventTextSource {
    const StringTable& strings;
    const Clock& clock;
    const Directory* directory = nullptr;
    const ScheduleList* schedules = nullptr;
    std::function<bool()> isReady{};                               // whether the directory is complete
    std::function<std::string(const EventRecord&)> problemText{};  // empty for an Event without a problem
    std::function<bool(const EventRecord&)> hasProblem{};
};

// A column of the Event list: one row of this table is all there is to it.
struct EventColumn {
    unsigned title;    // id of the string table
    const char* name;  // for the settings; never changes
    int share;         // of the list's width, in percent
    std::string (*text)(const EventRecord& record, const EventTextSource& source);
    // A number that stands for the text of this column, so that the text is made once for many Events; nothing where
    // the text depends on more. Null: always more.
    std::optional<std::uint32_t> (*code)(const EventRecord& record, const EventTextSource& source);
};

std::span<const EventColumn, kEventColumnCount> eventColumns();

inline const EventColumn& eventColumn(EventColumnId id) {
    return eventColumns()[static_cast<std::size_t>(id)];
}

// The server marked the Event, or it names a group that does not exist.
bool isBadEvent(const EventRecord& record, const EventTextSource& source);

// Of the Status column.
enum class EventStatus : std::uint8_t { kAvailable, kDisabled, kError };
EventStatus eventStatus(const EventRecord& record, const EventTextSource& source);

// Seconds from the trigger to the response.
std::uint32_t eventDelay(const EventRecord& record);

}  // namespace orvc
