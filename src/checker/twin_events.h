// Enabled Events that do the same.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "checker/schedule_finder.h"
#include "model/event_record.h"
#include "model/schedule.h"

namespace orvc {

// What an Event does, made comparable: values that it does not use are left out. The texts view the record's and the
// Schedule's.
struct EventDeed {
    std::uint32_t trigger = 0;
    std::uint32_t response = 0;
    std::uint32_t delay = 0;       // seconds
    std::uint32_t timeOfDay = 0;   // quarter hours after midnight
    std::uint32_t scheduleId = 0;  // the number of its Schedule's record
    KSMac sourceDevice{};
    KSMac destinationDevice{};
    std::string_view sourceGroup;
    std::string_view destinationGroup;
    std::string_view schedule;  // what the Event stores, where there is no such Schedule
    std::string_view content;   // the audio message's key, the payload file's GUID or the name of the file to read

    friend bool operator==(const EventDeed&, const EventDeed&) = default;
};

// Nothing for an Event that is disabled, or whose trigger or response is none that this console knows.
std::optional<EventDeed> deedOf(const EventRecord& record, const ScheduleRecord* schedule);

std::size_t hashOf(const EventDeed& deed);

// Purpose: groups Events that do the same, each group as a ring.
// Thread: user-interface thread. Cost: constant per Event that comes, changes or goes, however many do the same.
// Lifetime: members belong to the caller, who keeps them at their addresses until leave() or clear().
// Errors: update() throws std::bad_alloc, and the member is in no ring then.
class TwinEvents {
  public:
    class Member;

  private:
    using Rings = std::unordered_multimap<std::size_t, Member*>;  // by hash of the deed; any member stands for its ring

  public:
    class Member {
      public:
        const EventRecord* record = nullptr;

        // Another Event that does the same; null when there is none.
        Member* twin() const { return next_ != this ? next_ : nullptr; }
        // The one whose twin() this is; null when there is none.
        Member* follower() const { return previous_ != this ? previous_ : nullptr; }

      private:
        friend class TwinEvents;
        Member* next_ = nullptr;  // the member itself when it is alone in its ring, null outside
        Member* previous_ = nullptr;
        Rings::value_type* ring_ = nullptr;
    };

    explicit TwinEvents(const ScheduleFinder& schedules) : schedules_(schedules) {}

    // The member is new, or its record or its Schedule may have changed. Returns whether it is in another ring now.
    bool update(Member& member);
    // The member goes.
    void leave(Member& member);
    // Forgets every member.
    void clear() { rings_.clear(); }

  private:
    std::optional<EventDeed> deedOf(const Member& member) const;
    void join(Member& member, const EventDeed& deed);

    const ScheduleFinder& schedules_;
    Rings rings_;
};

}  // namespace orvc
