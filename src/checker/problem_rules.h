// The rules by which an Event is judged: pure functions of the records.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "checker/problem.h"
#include "checker/schedule_finder.h"
#include "model/directory.h"
#include "model/event_record.h"
#include "model/mail_settings.h"
#include "model/schedule.h"

namespace orvc {

// Whether the trigger comes from a device or a group. An unknown code counts as one that does.
bool hasSourcePlace(const EventRecord& record);
// Whether the response goes to a device or a group.
bool hasDestinationPlace(const EventRecord& record);
// An absent `Disabled` counts as disabled, as in the list.
inline bool isDisabled(const EventRecord& record) {
    return record.disabled != 0u;
}
// An absent text counts as an empty one.
inline std::string_view receivedText(const std::optional<std::string>& text) {
    return text ? std::string_view(*text) : std::string_view();
}
inline Response responseOf(const EventRecord& record) {
    return static_cast<Response>(record.responseType.value_or(0));
}
inline Trigger triggerOf(const EventRecord& record) {
    return static_cast<Trigger>(record.triggerType.value_or(0));
}

// All that the records themselves tell: every code but same-as, not-stored and bad-data. `schedule` is the Schedule
// that the Event means, null when there is none.
//
// Groups are judged wherever the Event names one, as the Status column does, devices only where the trigger or the
// response uses one. A source, a destination or a Schedule that the Event does not name at all is no problem here. A
// group counts as empty only when the server, too, expects no members.
ProblemSet findProblemCodes(const EventRecord& record, const Directory& directory, const ScheduleRecord* schedule,
                            bool hasMailServer);

// The same codes, with bad-data where the server marked the Event and no other problem but hints is there.
ProblemSet withErrorMark(ProblemSet codes, const EventRecord& record);

// What the records themselves do not tell.
struct KnownProblems {
    std::string_view sameAs;                              // key of an Event that does the same
    const std::vector<std::string>* notStored = nullptr;  // names of values; may be null
};

// The problems of a set in the order of their codes, hints last. A code comes twice where it is true of the source and
// of the destination.
std::vector<Problem> listProblems(ProblemSet codes, const EventRecord& record, const Directory& directory,
                                  const KnownProblems& known);

// Every problem of an Event that stands alone: all codes but same-as and not-stored.
std::vector<Problem> findProblems(const EventRecord& record, const Directory& directory,
                                  const ScheduleFinder& schedules, const MailSettings& mail);

}  // namespace orvc
