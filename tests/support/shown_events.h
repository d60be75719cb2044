// The Event list's rows beside a session or an EventList, ordered by the bytes of the names.
#pragma once

#include "fake_clock.h"
#include "fake_string_table.h"
#include "lists/event_table.h"

namespace orvc {

struct ShownEvents {
    FakeStringTable strings{};
    const FakeClock clock{};
    EventTable table{strings, clock, [](std::string_view name) { return std::string(name); }};
};

}  // namespace orvc
