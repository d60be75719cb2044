// How sentences name what Events use.
#pragma once

#include <string>
#include <string_view>

#include "checker/schedule_finder.h"
#include "model/directory.h"
#include "model/event_list.h"

namespace orvc {

// Where names are looked up. All of it outlives the use.
struct EventNames {
    const Directory& directory;
    const ScheduleFinder& schedules;
    const EventList& events;

    // The device's name; its address, as in "02:4b:53:10:00:09", when it has none or is not listed.
    std::string device(const KSMac& mac) const;
    // The Schedule's, the message's or the Event's name; the key when it has none or is not there.
    std::string schedule(std::string_view keyOrName) const;
    std::string message(std::string_view key) const;
    std::string event(std::string_view key) const;
};

}  // namespace orvc
