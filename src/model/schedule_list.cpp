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
    std::optional<std::string> former;
    bool isOther = false;
    if (field == "Name" || field == "Key") {
        std::optional<std::string>& member = field == "Name" ? record.name : record.key;
        // A text that comes again stays where it is: others may look at it.
        isOther = member != text;
        if (isOther) former = std::exchange(member, std::string(text));
    } else if (field == "CompleteBits") {
        record.completeBits = variable.number == 0xFFFFFFFF ? std::nullopt : std::optional(variable.number);
    } else if (field == "Hours") {
        const std::optional<WeekMask> before = std::exchange(record.hours, WeekMask{});
        copyScheduleFromString(*record.hours, text, log_);
        isOther = record.hours != before;
    } else {
        log_.log("updateScheduleVariables: variable '%.*s' not found", static_cast<int>(field.size()), field.data());
        return;
    }
    record.updated = true;
    if (isOther) tell(record, former);
}

void ScheduleList::tell(const ScheduleRecord& record, const std::optional<std::string>& former) {
    if (observer_ == nullptr) return;
    const bool isKept = !former || former == record.key || former == record.name;
    observer_->scheduleChanged(record, isKept ? std::string_view() : std::string_view(*former));
}

void ScheduleList::testCompleteness(ScheduleRecord& record) {
    const bool complete = isScheduleComplete(record, clock_);
    if (record.complete == complete) return;
    // A record that was never tested counts as complete in the log's words.
    log_.log("updateScheduleVariables: schedule %s changed from %s to %s", record.name.value_or("").c_str(),
             record.complete == false ? "Not Complete" : "Complete", complete ? "Complete" : "Not Complete");
    record.complete = complete;
}

const ScheduleRecord* ScheduleList::find(std::string_view key) const {
    const auto found = std::ranges::find_if(records_, [&](const ScheduleRecord& record) { return record.key == key; });
    return found != records_.end() ? &*found : nullptr;
}

void ScheduleList::removeKey(std::string_view path) {
    const auto parts = splitRecordPath(path, kSchedulesPath);
    // The built-in Schedule is always there.
    if (!parts || !parts->rest.empty() || parts->key == kDefaultScheduleKey) return;
    if (const auto found = byPath_.find(std::string(parts->key)); found != byPath_.end()) remove(*found->second);
}

const ScheduleRecord* ScheduleList::findById(std::uint32_t id) const {
    const auto found = std::ranges::find(records_, id, &ScheduleRecord::id);
    return found != records_.end() ? &*found : nullptr;
}

ScheduleRecord& ScheduleList::own(const ScheduleRecord& record) {
    return *std::ranges::find_if(records_, [&](const ScheduleRecord& listed) { return &listed == &record; });
}

ScheduleRecord& ScheduleList::store(const ScheduleRecord& saved) {
    const std::string key = saved.key.value_or("");
    const ScheduleRecord* known = saved.id != 0 ? findById(saved.id) : nullptr;
    if (known == nullptr) known = find(key);
    changed_ = true;
    if (known == nullptr) {
        std::list<ScheduleRecord> made{saved};
        ScheduleRecord& added = append(made, key);
        tell(added);
        return added;
    }
    ScheduleRecord& listed = own(*known);
    std::optional<std::string> name = saved.name;
    byPath_.insert_or_assign(key, &listed);
    std::swap(listed.name, name);
    listed.hours = saved.hours;
    tell(listed, name);
    return listed;
}

void ScheduleList::setHours(const ScheduleRecord& record, const WeekMask& hours) {
    ScheduleRecord& listed = own(record);
    listed.hours = hours;
    tell(listed);
}

void ScheduleList::remove(const ScheduleRecord& record) {
    std::erase_if(byPath_, [&](const auto& entry) { return entry.second == &record; });
    const auto listed =
        std::ranges::find_if(records_, [&](const ScheduleRecord& candidate) { return &candidate == &record; });
    std::list<ScheduleRecord> gone;
    gone.splice(gone.begin(), records_, listed);
    changed_ = true;
    if (observer_ != nullptr) observer_->scheduleGone(gone.front());
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
    tell(append(made, std::string(kDefaultScheduleKey)));
}

void ScheduleList::clear() {
    byPath_.clear();
    records_.clear();
    changed_ = true;
    if (observer_ != nullptr) observer_->schedulesCleared();
    try {
        makeDefault();
    } catch (const std::exception&) {
        // No memory. Whoever needs it next makes it.
    }
}

}  // namespace orvc
