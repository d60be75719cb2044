// Fetches an Event's payload file from the server for the editor.
#pragma once

#include <cstdint>
#include <string>

#include "app/file_reader.h"
#include "editors/event_form.h"
#include "link/server_link.h"
#include "support/clock.h"
#include "support/tracking_log.h"

namespace orvc {

// Thread: user-interface thread. The caller's timers drive it: start() once, then poll() until it says that it is done.
class PayloadFetcher {
  public:
    PayloadFetcher(ServerLink& link, FileReader& reader, TrackingLog& log, const Clock& clock);

    // Asks for the file that `guidText` names. Returns false when the server refuses; poll() then finds an empty file.
    bool start(PayloadFetch kind, const std::string& guidText);

    // False while the file is still awaited. Else the form has what arrived, or says that nothing did.
    bool poll(EventForm& form);

    PayloadFetch kind() const { return kind_; }

  private:
    ServerLink& link_;
    FileReader& reader_;
    TrackingLog& log_;
    const Clock& clock_;
    PayloadFetch kind_ = PayloadFetch::kNone;
    std::int64_t deadline_ = 0;  // seconds since 1970 UTC
};

}  // namespace orvc
