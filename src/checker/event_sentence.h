// What an Event does, in one sentence.
#pragma once

#include <string>

#include "checker/event_names.h"
#include "model/event_record.h"
#include "support/string_table.h"

namespace orvc {

// "When the button of 'Front door' is activated during 'Office hours', activate the relay of 'Gate' after 5 seconds."
// A value that the Event lacks is told as such: "(no source chosen)". Whether the Event is enabled is not told.
std::string eventSentence(const EventRecord& record, const StringTable& strings, const EventNames& names);

}  // namespace orvc
