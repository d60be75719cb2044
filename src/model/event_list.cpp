#include "model/event_list.h"

#include <algorithm>
#include <exception>

#include "model/guid.h"
#include "model/mac.h"
#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::int64_t kCompletionGrace = 500;  // seconds
constexpr std::uint32_t kComplete = 1;
constexpr std::uint32_t kBad = 1;
constexpr std::uint32_t kNotReceived = 0xFFFFFFFF;

// Sends one field of a record, whatever kind of member it is.
struct Writer {
    ServerLink& link;
    const EventRecord& record;
    const std::string& name;

    void operator()(OptionalDword EventRecord::*member) const {
        link.setDword(name, (record.*member).value_or(kNotReceived));
    }
    void operator()(std::uint32_t EventRecord::*member) const { link.setDword(name, record.*member); }
    void operator()(std::optional<std::string> EventRecord::*member) const {
        link.setText(name, (record.*member).value_or(std::string()));
    }
    void operator()(KSMac EventRecord::*member) const { link.setText(name, formatMac(record.*member)); }
};

}  // namespace

EventList::EventList(ServerLink& link, const Directory& directory, TrackingLog& log, const Clock& clock,
                     SortKeyMaker makeSortKey)
    : link_(link), directory_(directory), log_(log), clock_(clock), rows_(std::move(makeSortKey)) {}

bool EventList::updateEventSystemVariables(const Variable& variable) {
    const auto path = splitRecordPath(variable.name, kEventsPath);
    if (!path) return false;
    if (path->key.empty()) {
        log_.log("updateEventSystemVariables: did not get the event name properly");
        return false;
    }
    EventRecord& record = findOrCreate(path->key);
    if (!setEventField(record, path->rest, variable.text, variable.number))
        log_.log("updateEventSystemVariable: variable '%.*s' not found", static_cast<int>(path->rest.size()),
                 path->rest.data());
    showIfComplete(record, path->rest == eventFields().front().name);
    return true;
}

EventRecord& EventList::findOrCreate(std::string_view key) {
    if (lastUpdated_ != nullptr && lastUpdated_->key == key && key.size() < kUnfindableKeyLength) return *lastUpdated_;
    EventRecord* record = find(key);
    if (record == nullptr) {
        // Listed when nothing can fail any more.
        Records made(1);
        record = &made.front();
        record->key = key;
        record->completionDeadline = clock_.now() + kCompletionGrace;
        byKey_.try_emplace(record->key, made.begin());
        records_.splice(records_.begin(), made);
    }
    lastUpdated_ = record;
    return *record;
}

EventRecord* EventList::find(std::string_view key) {
    if (key.size() >= kUnfindableKeyLength) return nullptr;
    const auto found = byKey_.find(key);
    return found != byKey_.end() ? &*found->second : nullptr;
}

void EventList::showIfComplete(EventRecord& record, bool nameCame) {
    if (!isEventComplete(record, clock_)) return;
    if (!record.hasRow) {
        rows_.insert(record);
    } else {
        record.changed = false;
        if (nameCame) rows_.rename(record);
    }
    if (!isEventValid(record, directory_)) record.badData = kBad;
    rows_.touch();
}

EventRecord& EventList::append(EventRecord record) {
    Records made;
    EventRecord& added = made.emplace_back(std::move(record));
    const auto indexed = byKey_.try_emplace(added.key, made.begin());
    try {
        rows_.insert(added);
    } catch (const std::exception&) {
        if (indexed.second) byKey_.erase(indexed.first);
        throw;
    }
    records_.splice(records_.end(), made);
    return added;
}

EventRecord& EventList::store(const EventRecord& saved) {
    EventRecord stored = saved;
    stored.hasRow = false;
    const auto indexed = byKey_.find(saved.key);
    if (indexed == byKey_.end()) return append(std::move(stored));
    const Records::iterator record = indexed->second;
    stored.lastChecked = record->lastChecked;
    stored.lastTriggered = record->lastTriggered;
    rows_.remove(*record);
    // The index views the key that is about to be replaced.
    auto index = byKey_.extract(indexed);
    *record = std::move(stored);
    index.key() = record->key;
    byKey_.insert(std::move(index));
    rows_.insert(*record);
    return *record;
}

void EventList::write(EventRecord& record) {
    const bool wasBad = record.badData == kBad;
    if (wasBad) record.badData = 0;
    record.completeBits = kComplete;
    const std::string path = joinPath(kEventsPath, record.key);
    link_.createKey(path, true);
    for (const std::size_t index : eventWriteOrder()) {
        const EventField& field = eventFields()[index];
        const bool isBadData = &field == &eventFields().back();
        if (isBadData && !wasBad) continue;
        const std::string name = (path + "\\").append(field.name);
        std::visit(Writer{link_, record, name}, field.member);
    }
}

void EventList::deletePayloadFile(const EventRecord& record) {
    if (record.fileGuid && !record.fileGuid->empty()) link_.deleteFile(makeGUID(*record.fileGuid, log_));
}

void EventList::remove(EventRecord& record) {
    rows_.remove(record);
    const std::string path = joinPath(kEventsPath, record.key) + "\\";
    if (lastUpdated_ == &record) lastUpdated_ = nullptr;
    // A record with an unfindable key shares it with others: find the record itself.
    const auto found =
        std::find_if(records_.begin(), records_.end(), [&](const EventRecord& r) { return &r == &record; });
    if (const auto indexed = byKey_.find(record.key); indexed != byKey_.end() && indexed->second == found)
        byKey_.erase(indexed);
    records_.erase(found);
    link_.createKey(path, false);
}

void EventList::clear() {
    rows_.clear();
    byKey_.clear();
    records_.clear();
    lastUpdated_ = nullptr;
}

}  // namespace orvc
