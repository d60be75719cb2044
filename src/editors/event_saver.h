// Turns an entered Event into its record and its payload file.
#pragma once

#include "editors/event_file.h"
#include "editors/event_form.h"
#include "link/server_link.h"
#include "model/event_record.h"
#include "support/tracking_log.h"

namespace orvc {

// Deletes the record's old payload file on the server, takes the form's values over, gives a record without a key a new
// one, and writes the new payload file where the response has one. What the server refuses is logged and stops nothing.
// Writing the record's variables is the caller's. User-interface thread.
void fillEvent(const EventForm& form, EventRecord& record, ServerLink& link, TrackingLog& log,
               const GuidMaker& makeNew);

}  // namespace orvc
