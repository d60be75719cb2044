#include "model/schedule_list.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::int64_t kCompletionGrace = 5;  // seconds
constexpr std::uint32_t kComplete = 1;

}  // namespace

ScheduleList::ScheduleList(ServerLink& link, TrackingLog& log, const Clock& clock)
    : link_(link), log_(log), clock_(clock) {}

bool ScheduleList::updateScheduleVariables(const Variable& variable) {
    const auto path = splitRecordPath(variable.name, kSchedulesPath);
    if (!path) return false;
    if (path->key.empty()) {
        log_.log("updateDeviceVariables: did not get the device name properly");
        return false;
    }
    ScheduleRecord& record = findOrCreate(path->key);
    const bool wasUpdated = record.updated;
    const std::size_t lastBackslash = path->rest.rfind('\\');
    setField(record, lastBackslash == std::string_view::npos ? path->rest : path->rest.substr(lastBackslash + 1),
             variable);
    testCompleteness(record);
    if (record.updated != wasUpdated)
        log_.log("updateScheduleVariables: schedule %s changed from %s to %s", record.name.value_or("").c_str(),
                 wasUpdated ? "Updated" : "Not Updated", record.updated ? "Updated" : "Not Updated");
    return true;
}

ScheduleRecord& ScheduleList::findOrCreate(std::string_view key) {
    makeDefault();
    const std::string path(key);
    if (key.size() < kUnfindableKeyLength)
        if (const auto found = byPath_.find(path); found != byPath_.end()) return *found->second;
    // Listed when nothing can fail any more.
    std::list<ScheduleRecord> made(1);
    ScheduleRecord& record = made.front();
    record.key = path;
    record.completionDeadline = clock_.now() + kCompletionGrace;
    byPath_.try_emplace(path, &record);
    records_.splice(records_.end(), made);
    return record;
}

void ScheduleList::setField(ScheduleRecord& record, std::string_view field, const Variable& variable) {
    const std::string_view text = variable.text.value_or(std::string_view());
    if (field == "Name") {
        record.name = text;
    } else if (field == "Key") {
        record.key = text;
    } else if (field == "CompleteBits") {
        record.completeBits = variable.number == 0xFFFFFFFF ? std::nullopt : std::optional(variable.number);
    } else if (field == "Hours") {
        record.hours = WeekMask{};
        copyScheduleFromString(*record.hours, text, log_);
    } else {
        log_.log("updateScheduleVariables: variable '%.*s' not found", static_cast<int>(field.size()), field.data());
        return;
    }
    record.updated = true;
}

void ScheduleList::testCompleteness(ScheduleRecord& record) {
    const bool complete = isScheduleComplete(record, clock_);
    if (record.complete == complete) return;
    // A record that was never tested counts as complete in the log's words.
    log_.log("updateScheduleVariables: schedule %s changed from %s to %s", record.name.value_or("").c_str(),
             record.complete == false ? "Not Complete" : "Complete", complete ? "Complete" : "Not Complete");
    record.complete = complete;
}

ScheduleRecord* ScheduleList::find(std::string_view key) {
    const auto found = std::ranges::find_if(records_, [&](const ScheduleRecord& record) { return record.key == key; });
    return found != records_.end() ? &*found : nullptr;
}

ScheduleRecord& ScheduleList::add(const ScheduleRecord& record) {
    ScheduleRecord* listed = find(record.key.value_or(""));
    if (listed == nullptr) {
        std::list<ScheduleRecord> made{record};
        listed = &made.front();
        byPath_.try_emplace(record.key.value_or(""), listed);
        records_.splice(records_.end(), made);
    }
    write(record);
    return *listed;
}

void ScheduleList::write(const ScheduleRecord& record) {
    const std::string key = record.key.value_or("");
    const std::string path = joinPath(kSchedulesPath, key) + "\\";
    link_.setText(path + "Name", record.name.value_or(""));
    link_.setText(path + "Key", key);
    link_.setText(path + "Hours", formatHours(record.hours.value_or(WeekMask{})));
    link_.setDword(path + "CompleteBits", kComplete);
}

bool ScheduleList::takeUpdates() {
    bool any = std::exchange(cleared_, false);
    for (ScheduleRecord& record : records_)
        any = std::exchange(record.updated, false) || any;
    return any;
}

void ScheduleList::makeDefault() {
    if (!records_.empty()) return;
    std::list<ScheduleRecord> made(1);
    ScheduleRecord& record = made.front();
    record.name = kDefaultScheduleName;
    record.key = kDefaultScheduleKey;
    record.hours = WeekMask::everySlot();
    record.completeBits = kComplete;
    byPath_.try_emplace(std::string(kDefaultScheduleKey), &record);
    records_.splice(records_.end(), made);
}

void ScheduleList::clear() {
    byPath_.clear();
    records_.clear();
    cleared_ = true;
    try {
        makeDefault();
    } catch (const std::exception&) {
        // No memory. Whoever needs it next makes it.
    }
}

}  // namespace orvc
