#include "model/event_list.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::int64_t kCompletionGrace = 500;  // seconds
constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

}  // namespace

EventList::EventList(EventListObserver& observer, TrackingLog& log, const Clock& clock)
    : observer_(observer), log_(log), clock_(clock), nextDeadline_(kNever) {}

bool EventList::updateEventSystemVariables(const Variable& variable) {
    const auto path = splitRecordPath(variable.name, kEventsPath);
    if (!path) return false;
    if (path->key.empty()) {
        log_.log("updateEventSystemVariables: did not get the event name properly");
        return false;
    }
    EventRecord& record = findOrCreate(path->key);
    const EventField* const field = setEventField(record, path->rest, variable.text, variable.number);
    if (field == nullptr)
        log_.log("updateEventSystemVariable: variable '%.*s' not found", static_cast<int>(path->rest.size()),
                 path->rest.data());
    const bool renamed = field != nullptr && field->member == EventField::Member(&EventRecord::name);
    showIfComplete(record, renamed);
    return true;
}

void EventList::removeKey(std::string_view path) {
    const auto parts = splitRecordPath(path, kEventsPath);
    if (!parts || !parts->rest.empty()) return;
    if (EventRecord* const record = find(parts->key)) remove(*record);
}

EventRecord& EventList::findOrCreate(std::string_view key) {
    if (lastUpdated_ != nullptr && lastUpdated_->key == key && key.size() < kUnfindableKeyLength) return *lastUpdated_;
    EventRecord* record = find(key);
    if (record == nullptr) {
        // Added to the list last, when nothing can fail.
        Records made(1);
        record = &made.front();
        record->key = key;
        record->completionDeadline = clock_.now() + kCompletionGrace;
        byKey_.try_emplace(record->key, made.begin());
        records_.splice(records_.begin(), made);
        nextDeadline_ = std::min(nextDeadline_, record->completionDeadline);
    }
    lastUpdated_ = record;
    return *record;
}

const EventRecord* EventList::find(std::string_view key) const {
    if (key.size() >= kUnfindableKeyLength) return nullptr;
    const auto found = byKey_.find(key);
    return found != byKey_.end() ? &*found->second : nullptr;
}

EventRecord* EventList::find(std::string_view key) {
    return const_cast<EventRecord*>(std::as_const(*this).find(key));
}

EventRecord* EventList::findAny(std::string_view key) {
    if (EventRecord* const found = find(key)) return found;
    const auto found = std::ranges::find(records_, key, &EventRecord::key);
    return found != records_.end() ? &*found : nullptr;
}

void EventList::showIfComplete(EventRecord& record, bool renamed) {
    if (isEventComplete(record, clock_))
        show(record, renamed);
    else if (record.isShown)
        observer_.shownEventLacksValue(record);
}

void EventList::show(EventRecord& record, bool renamed) {
    record.isShown = true;
    observer_.eventChanged(record, renamed);
}

void EventList::showOverdue() {
    const std::int64_t now = clock_.now();
    if (now <= nextDeadline_) return;
    std::int64_t next = kNever;
    for (EventRecord& record : records_) {
        if (now > record.completionDeadline)
            showIfComplete(record, false);
        else
            next = std::min(next, record.completionDeadline);
    }
    nextDeadline_ = next;
}

EventRecord& EventList::store(const EventRecord& saved) {
    const auto indexed = byKey_.find(saved.key);
    if (indexed == byKey_.end()) {
        Records made(1, saved);
        EventRecord& added = made.front();
        byKey_.try_emplace(added.key, made.begin());
        records_.splice(records_.end(), made);
        show(added, true);
        return added;
    }
    EventRecord stored = saved;
    EventRecord& record = *indexed->second;
    stored.lastChecked = record.lastChecked;
    stored.lastTriggered = record.lastTriggered;
    // The index views the key that is about to be replaced.
    auto index = byKey_.extract(indexed);
    record = std::move(stored);
    index.key() = record.key;
    byKey_.insert(std::move(index));
    show(record, true);
    return record;
}

void EventList::remove(EventRecord& record) {
    observer_.eventGone(record);
    if (lastUpdated_ == &record) lastUpdated_ = nullptr;
    // A record with an unfindable key shares it with others: find the record itself.
    const auto indexed = byKey_.find(record.key);
    if (indexed != byKey_.end() && &*indexed->second == &record) {
        const Records::iterator listed = indexed->second;
        byKey_.erase(indexed);
        records_.erase(listed);
    } else {
        records_.remove_if([&](const EventRecord& listed) { return &listed == &record; });
    }
}

void EventList::clear() {
    observer_.eventsCleared();
    byKey_.clear();
    records_.clear();
    lastUpdated_ = nullptr;
    nextDeadline_ = kNever;
}

}  // namespace orvc
