// All Events that the server told of, and their way back to the server.
#pragma once

#include <list>
#include <string_view>
#include <unordered_map>

#include "link/server_link.h"
#include "link/variable_store.h"
#include "model/directory.h"
#include "model/event_record.h"
#include "model/event_rows.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// Purpose: builds Event records from variables as they arrive, in any order; writes and deletes them.
// Thread: user-interface thread. Cost: constant per variable; a new row costs its look-up.
// Lifetime: a record lives until remove() or clear(). Code that runs the message loop in between finds it again by key.
class EventList final : public VariableOwner {
  public:
    EventList(ServerLink& link, const Directory& directory, TrackingLog& log, const Clock& clock,
              SortKeyMaker makeSortKey);

    // Claims every name below \ORVS\Events\<key>\ and takes its value. The record gets its row once it is complete.
    bool updateEventSystemVariables(const Variable& variable);
    bool updateVariable(const Variable& variable) override { return updateEventSystemVariables(variable); }

    // Exact and case-sensitive; null when there is none. A key of 128 characters or more is never found.
    EventRecord* find(std::string_view key);

    // Puts a copy of `record` at the tail, with its row.
    EventRecord& append(EventRecord record);

    // Takes over what the editor saved: replaces the record of its key, or appends it. What the server told meanwhile
    // of its firings stays. The row moves to where the name belongs.
    EventRecord& store(const EventRecord& saved);

    // Writes every field to the server, the completion marker behind the values that it vouches for.
    void write(EventRecord& record);

    // Deletes the payload file on the server when the record names one.
    void deletePayloadFile(const EventRecord& record);

    // Removes the record, its row, and its key on the server.
    void remove(EventRecord& record);

    void clear();

    const EventRows& rows() const { return rows_; }
    std::size_t size() const { return records_.size(); }

  private:
    using Records = std::list<EventRecord>;

    EventRecord& findOrCreate(std::string_view key);
    void showIfComplete(EventRecord& record, bool nameCame);

    ServerLink& link_;
    const Directory& directory_;
    TrackingLog& log_;
    const Clock& clock_;
    Records records_;
    std::unordered_map<std::string_view, Records::iterator> byKey_;  // the keys view the records' own
    EventRecord* lastUpdated_ = nullptr;  // an Event's variables usually come one after the other
    EventRows rows_;
};

}  // namespace orvc
