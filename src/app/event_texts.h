// What the Event list shows in its columns.
#pragma once

#include <string>

#include "model/event_record.h"
#include "support/clock.h"
#include "support/string_table.h"

namespace orvc {

enum class EventColumn { kName, kStatus, kLastEvent, kResponse };
inline constexpr int kEventColumnCount = 4;

// The text of one cell. Thread: user-interface thread.
std::string eventCellText(const EventRecord& record, EventColumn column, const StringTable& strings,
                          const Clock& clock);

}  // namespace orvc
