// Copies an Event together with its payload file.
#pragma once

#include <optional>
#include <string>

#include "session/bulk_changes.h"
#include "session/payload_fetcher.h"

namespace orvc {

// Purpose: fetches an Event's payload file, if it has one, and makes the change that creates the copy. One at a time.
// Thread: user-interface thread; the caller's timer drives it. Lifetime: what the constructor takes outlives it.
class EventCopier {
  public:
    EventCopier(ServerReader& link, FileReader& reader, TrackingLog& log, const Clock& clock)
        : fetcher_(link, reader, log, clock) {}

    // Begins a copy with that key and name; poll() has the result, at once for an Event without a payload file.
    void start(const EventRecord& original, const std::string& key, const std::string& name);
    bool isBusy() const { return original_.has_value(); }
    void cancel();

    struct Copy {
        std::string originalName;
        std::optional<EventChange> change;  // none: the server did not deliver the payload file
    };
    // Nothing while the file is awaited, and when no copy was begun.
    std::optional<Copy> poll();

  private:
    PayloadFetcher fetcher_;
    std::optional<EventRecord> original_;
    std::string key_;
    std::string name_;
};

}  // namespace orvc
