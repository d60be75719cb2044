// What someone wants changed on the server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "model/event_record.h"
#include "model/mail_settings.h"
#include "model/schedule.h"
#include "payload/payload_file.h"

namespace orvc {

// The payload file of an Event: whole, as it is written.
struct PayloadFile {
    PayloadKind kind = PayloadKind::kNone;  // none: the Event has no file
    std::string bytes;
};

// In each change `before` is what its maker saw, and `after` what is wanted; nothing stands for "does not exist".

// The key is that of whichever record is there; both have the same.
struct EventChange {
    std::optional<EventRecord> before;
    std::optional<EventRecord> after;
    PayloadFile payload;  // of `after`; takes the place of the Event's old file
    // The name of one field, as in eventFields(): only its value and the completion marker are written then, and the
    // payload file stays. Empty: the whole Event.
    std::string_view onlyField = {};
};

struct ScheduleChange {
    std::optional<ScheduleRecord> before;
    std::optional<ScheduleRecord> after;
};

struct MailChange {
    MailSettings before;
    MailSettings after;
};

using Change = std::variant<EventChange, ScheduleChange, MailChange>;

// What became of a change.
enum class Outcome {
    kStored,     // every value came back from the server as it was written
    kRefused,    // the library or the server refused at least one call
    kNoEcho,     // at least one value did not come back in time
    kLinkLost,   // the link was lost before the outcome was known; if nothing was written, nothing has changed
    kCancelled,  // nothing was written
    kGone,       // one field was to change of an Event that is no longer there; nothing was written
};

struct ChangeResult {
    Outcome outcome = Outcome::kStored;
    // Full names of the values that were not stored, or what was done to which file.
    std::vector<std::string> notStored;
};

}  // namespace orvc
