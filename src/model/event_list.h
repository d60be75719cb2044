// All Events that the server sent.
#pragma once

#include <cstdint>
#include <list>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "link/variable_store.h"
#include "model/event_record.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// Who follows the Events. Called on the user-interface thread.
class EventListObserver {
  public:
    virtual ~EventListObserver() = default;
    // A complete record has come or changed; `renamed` when its name may be another one. It can be shown from now on.
    virtual void eventChanged(const EventRecord& record, bool renamed) = 0;
    // A record that is shown has changed and lacks a value now. It stays shown.
    virtual void shownEventLacksValue(const EventRecord& record) { static_cast<void>(record); }
    // The record is about to be freed.
    virtual void eventGone(const EventRecord& record) = 0;
    // All of them are.
    virtual void eventsCleared() = 0;
};

// Passes every call on to several observers, in the order in which they are given. They outlive it.
class EventListObservers final : public EventListObserver {
  public:
    explicit EventListObservers(std::vector<EventListObserver*> observers) : observers_(std::move(observers)) {}

    void eventChanged(const EventRecord& record, bool renamed) override {
        for (EventListObserver* const observer : observers_)
            observer->eventChanged(record, renamed);
    }
    void shownEventLacksValue(const EventRecord& record) override {
        for (EventListObserver* const observer : observers_)
            observer->shownEventLacksValue(record);
    }
    void eventGone(const EventRecord& record) override {
        for (EventListObserver* const observer : observers_)
            observer->eventGone(record);
    }
    void eventsCleared() override {
        for (EventListObserver* const observer : observers_)
            observer->eventsCleared();
    }

  private:
    std::vector<EventListObserver*> observers_;
};

// Purpose: builds Event records from variables as they arrive, in any order. It writes nothing.
// Thread: user-interface thread. Cost: constant per variable.
// Lifetime: a record lives until remove() or clear(), at the same address. Code that runs the message loop in between
// finds it again by key. What the constructor takes outlives the list.
class EventList final : public VariableOwner {
  public:
    EventList(EventListObserver& observer, TrackingLog& log, const Clock& clock);

    // Claims every name below \ORVS\Events\<key>\ and takes its value.
    bool updateEventSystemVariables(const Variable& variable);
    bool updateVariable(const Variable& variable) override { return updateEventSystemVariables(variable); }
    // Another console deleted the Event: removes its record.
    void removeKey(std::string_view path) override;

    // Exact and case-sensitive; null when there is none. A key of 128 characters or more is never found.
    EventRecord* find(std::string_view key);
    const EventRecord* find(std::string_view key) const;

    // The same, also for a key that find() never finds: looks at each record then.
    EventRecord* findAny(std::string_view key);

    // Takes over what was saved: replaces the record of its key, or appends it. The times that the server sent of its
    // own stay. Returns the record in the list.
    EventRecord& store(const EventRecord& saved);

    // Removes the record here.
    void remove(EventRecord& record);

    // Shows the records whose time to become complete is over. Cheap while there is none; called now and then.
    void showOverdue();

    void clear();

    std::size_t size() const { return records_.size(); }
    // Newest first.
    const std::list<EventRecord>& records() const { return records_; }

  private:
    using Records = std::list<EventRecord>;

    EventRecord& findOrCreate(std::string_view key);
    void showIfComplete(EventRecord& record, bool renamed);
    void show(EventRecord& record, bool renamed);

    EventListObserver& observer_;
    TrackingLog& log_;
    const Clock& clock_;
    Records records_;
    std::unordered_map<std::string_view, Records::iterator> byKey_;  // the keys view the records' own
    EventRecord* lastUpdated_ = nullptr;  // an Event's variables usually come one after the other
    std::int64_t nextDeadline_;           // of an incomplete record, in seconds since 1970 UTC; or earlier
};

}  // namespace orvc
