// Turns what was entered in the Event editor into the change that saves it.
#pragma once

#include <optional>
#include <string>

#include "editors/event/event_form.h"
#include "session/change.h"

namespace orvc {

// The change that Save wants. `opened` is the Event as the editor loaded it; none for a new one. `key` is its key.
EventChange changeFrom(const EventForm& form, const std::optional<EventRecord>& opened, const std::string& key);

}  // namespace orvc
