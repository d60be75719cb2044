// The only way a change reaches the server.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "link/server_link.h"
#include "link/variable_store.h"
#include "model/directory.h"
#include "model/event_list.h"
#include "model/schedule_list.h"
#include "session/change.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// The records that a change is made to here, beside the server.
struct ConfigurationRecords {
    EventList& events;
    ScheduleList& schedules;
    MailSettings& mail;
    const Directory& directory;
};

// Purpose: carries changes out, one after the other and each in its fixed order of calls, and finds out what became of
// them. Everything that changes the configuration goes through here: it is the only caller of ServerWriter.
//
// A change of an Event deletes its old payload file, makes and writes the new one, creates the key and writes the
// values, the completion marker behind those that it vouches for. A deletion deletes the payload file, then the key.
// The record here changes along with the server. A call that is refused is logged and stops nothing. A change of one
// field writes that and the marker, and leaves alone what others have changed meanwhile.
//
// Each value comes back from the server as a notification, its echo. A value that did not come back as it was written
// within five seconds is not stored.
//
// Thread: user-interface thread. Lifetime: what the constructor takes outlives the gate.
// Guarantees: no record is left half-written, but by a server that refuses, or a link that is lost. What fails for lack
// of memory throws out of apply() or step() and is tried again by the next step().
class Gate {
  public:
    // Called once per apply(), from step() or from linkLost(), with one result per change, in their order.
    using Done = std::function<void(const std::vector<ChangeResult>& results)>;
    using Ticket = std::uint32_t;

    Gate(ServerWriter& writer, const ConfigurationRecords& records, TrackingLog& log, const Clock& clock);

    // Takes changes and begins at once: a single one is written when this returns. The rest is step()'s.
    Ticket apply(std::vector<Change> changes, Done done = nullptr);

    // Ends a job between two records: what was written stays, the rest is not begun.
    void cancel(Ticket ticket);

    // Changes written, of how many, for a progress bar. Nothing for a job that is done.
    struct Progress {
        std::size_t written;
        std::size_t all;

        friend bool operator==(const Progress&, const Progress&) = default;
    };
    std::optional<Progress> progress(Ticket ticket) const;

    // Goes on for about this long, and gives up echoes that are overdue. Returns true when there is more to write now.
    bool step(std::chrono::milliseconds budget = kBudget);
    // Changes are under way, or echoes awaited: step() is to be called now and then.
    bool isBusy() const { return !jobs_.empty(); }

    // Every notification of a value passes through here first.
    void observe(const Variable& variable);
    // Another console deleted this key, whose path ends in a backslash; false when it was this one, whose record went
    // when it was deleted and may have been made again since.
    bool isForeignDeletion(std::string_view path);

    // The link is gone: nothing more is written or awaited.
    void linkLost();

    // How long one step keeps the window from its other work.
    static constexpr std::chrono::milliseconds kBudget{5};

  private:
    struct Job {
        Ticket ticket = 0;
        std::vector<Change> changes;
        std::vector<ChangeResult> results;
        Done done;
        std::size_t written = 0;    // changes so far
        std::size_t awaited = 0;    // echoes still to come
        std::int64_t deadline = 0;  // for them, in seconds since 1970 UTC
        bool filesDone = false;     // of the change that is next: it failed for lack of memory after its files
    };
    struct Echo {
        std::optional<std::string> text;  // none: it is a number
        std::uint32_t number;
        Ticket ticket;
        std::size_t change;
    };

    // Finds a name without making a string of it.
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
    };
    using Echoes = std::unordered_map<std::string, std::vector<Echo>, NameHash, std::equal_to<>>;

    void writeNext(Job& job);
    void write(EventChange& change, ChangeResult& result, Job& job);
    void write(const ScheduleChange& change, ChangeResult& result, Job& job);
    void write(const MailChange& change, ChangeResult& result, Job& job);
    void removeEvent(const EventRecord& before, ChangeResult& result, Job& job);
    void replacePayload(EventChange& change, ChangeResult& result);
    void writeField(const EventChange& change, ChangeResult& result, Job& job);
    void writeValues(const VariableValues& values, ChangeResult& result, Job& job);
    void removeKey(const std::string& path, ChangeResult& result, Job& job);
    void check(std::int32_t code, const std::string& what, ChangeResult& result);
    Job* findJob(Ticket ticket);
    void settle(const Echo& echo);
    void giveUpOverdue();
    void finish(std::list<Job>::iterator job);

    ServerWriter& writer_;
    ConfigurationRecords records_;
    TrackingLog& log_;
    const Clock& clock_;
    std::list<Job> jobs_;  // in the order of apply()
    Ticket lastTicket_ = 0;
    Echoes echoes_;     // of values, by full name, oldest first
    Echoes deletions_;  // of keys, by path
};

}  // namespace orvc
