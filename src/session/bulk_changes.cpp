#include "session/bulk_changes.h"

#include <utility>

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

Change changeOfField(const EventRecord& before, EventRecord after, std::string_view field) {
    return EventChange{before, std::move(after), {}, field};
}

}  // namespace

std::vector<Change> changesToDisable(const EventRecords& records, bool disabled) {
    std::vector<Change> changes;
    for (const EventRecord* const record : records) {
        if ((record->disabled != 0u) == disabled) continue;
        EventRecord after = *record;
        after.disabled = disabled ? 1 : 0;
        changes.push_back(changeOfField(*record, std::move(after), "Disabled"));
    }
    return changes;
}

std::vector<Change> changesToAssignSchedule(const EventRecords& records, const std::string& scheduleKey) {
    std::vector<Change> changes;
    for (const EventRecord* const record : records) {
        if (record->scheduleKey == scheduleKey) continue;
        EventRecord after = *record;
        after.scheduleKey = scheduleKey;
        changes.push_back(changeOfField(*record, std::move(after), "ScheduleKey"));
    }
    return changes;
}

std::vector<Change> changesToDelete(const EventRecords& records) {
    std::vector<Change> changes;
    changes.reserve(records.size());
    for (const EventRecord* const record : records)
        changes.emplace_back(EventChange{*record, std::nullopt, {}});
    return changes;
}

EventChange changeToDuplicate(const EventRecord& original, const std::string& key, const std::string& name,
                              PayloadFile payload) {
    EventRecord copy = original;
    copy.key = key;
    copy.name = name;
    copy.fileGuid.reset();  // the gate makes a file of the copy's own
    copy.lastChecked = 0;
    copy.lastTriggered = 0;
    copy.disabled = 1;
    copy.badData.reset();
    return EventChange{std::nullopt, std::move(copy), std::move(payload)};
}

std::string nameOfCopy(const StringTable& strings, const std::string& name,
                       const std::function<bool(const std::string&)>& isTaken) {
    std::string copy = fillIn(strings.text(IDS_COPY_NAME), {name});
    for (long number = 2; isTaken(copy); ++number)
        copy = fillIn(strings.text(IDS_COPY_NAME_NUMBERED), {number, name});
    return copy;
}

}  // namespace orvc
