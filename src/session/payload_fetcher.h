// Fetches an Event's payload file from the server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "link/server_link.h"
#include "payload/payload_file.h"
#include "session/file_reader.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// How a fetch ended.
struct FetchedPayload {
    PayloadKind kind = PayloadKind::kNone;
    bool arrived = false;  // false: the server did not deliver the file in time
    std::string text{};    // of a spoken text
    EventEmail email{};    // of an e-mail
};

// Purpose: one fetch at a time. Thread: user-interface thread; the caller's timers drive it.
// Lifetime: what the constructor takes outlives it.
class PayloadFetcher {
  public:
    PayloadFetcher(ServerReader& link, FileReader& reader, TrackingLog& log, const Clock& clock);

    // Asks for the file that `guidText` names. Returns false when the server refuses; poll() then finds an empty file.
    bool start(PayloadKind kind, const std::string& guidText);

    // Ends a fetch of that kind without a result.
    void cancel(PayloadKind kind);

    // Nothing while the file is awaited, and when none is: a timer's last tick may come after the end.
    std::optional<FetchedPayload> poll();

    // What is being fetched; none before start() and after the end.
    PayloadKind kind() const { return kind_; }

  private:
    ServerReader& link_;
    FileReader& reader_;
    TrackingLog& log_;
    const Clock& clock_;
    PayloadKind kind_ = PayloadKind::kNone;
    std::string guidText_;
    std::int64_t deadline_ = 0;  // seconds since 1970 UTC
};

}  // namespace orvc
