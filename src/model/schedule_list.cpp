#include "model/schedule_list.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::int64_t kCompletionGrace = 5;  // seconds

}  // namespace

ScheduleList::ScheduleList(TrackingLog& log, const Clock& clock) : log_(log), clock_(clock) {}

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
    std::list<ScheduleRecord> made(1);
    ScheduleRecord& record = made.front();
    record.key = path;
    record.completionDeadline = clock_.now() + kCompletionGrace;
    return append(made, path);
}

// Added to the list last, when nothing can fail.
ScheduleRecord& ScheduleList::append(std::list<ScheduleRecord>& made, const std::string& path) {
    ScheduleRecord& record = made.front();
    byPath_.insert_or_assign(path, &record);
    record.id = ++lastId_;
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

void ScheduleList::removeKey(std::string_view path) {
    const auto parts = splitRecordPath(path, kSchedulesPath);
    // The built-in Schedule is always there.
    if (!parts || !parts->rest.empty() || parts->key == kDefaultScheduleKey) return;
    if (const auto found = byPath_.find(std::string(parts->key)); found != byPath_.end()) remove(*found->second);
}

ScheduleRecord* ScheduleList::findById(std::uint32_t id) {
    const auto found = std::ranges::find(records_, id, &ScheduleRecord::id);
    return found != records_.end() ? &*found : nullptr;
}

ScheduleRecord& ScheduleList::store(const ScheduleRecord& saved) {
    const std::string key = saved.key.value_or("");
    ScheduleRecord* listed = saved.id != 0 ? findById(saved.id) : nullptr;
    if (listed == nullptr) listed = find(key);
    if (listed == nullptr) {
        std::list<ScheduleRecord> made{saved};
        listed = &append(made, key);
    } else {
        byPath_.insert_or_assign(key, listed);
        listed->name = saved.name;
        listed->hours = saved.hours;
    }
    changed_ = true;
    return *listed;
}

void ScheduleList::remove(ScheduleRecord& record) {
    std::erase_if(byPath_, [&](const auto& entry) { return entry.second == &record; });
    records_.remove_if([&](const ScheduleRecord& listed) { return &listed == &record; });
    changed_ = true;
}

bool ScheduleList::takeUpdates() {
    bool any = std::exchange(changed_, false);
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
    record.completeBits = 1;
    append(made, std::string(kDefaultScheduleKey));
}

void ScheduleList::clear() {
    byPath_.clear();
    records_.clear();
    changed_ = true;
    try {
        makeDefault();
    } catch (const std::exception&) {
        // No memory. Whoever needs it next makes it.
    }
}

}  // namespace orvc
