#include "editors/event/event_entry.h"

#include <utility>

namespace orvc {

EventChange changeFrom(const EventForm& form, const std::optional<EventRecord>& opened, const std::string& key) {
    EventRecord after = opened.value_or(EventRecord());
    after.key = key;
    form.fill(after);
    EventChange change{opened, std::move(after), {}};
    if (form.response() == Response::kTtsMessage) {
        change.payload = {PayloadKind::kSpokenText, formatTtsFile(form.spokenText())};
    } else if (form.response() == Response::kEmail) {
        EventEmail email = form.email();
        // The editor does not show carbon copies: they are dropped.
        email.cc.clear();
        email.bc.clear();
        change.payload = {PayloadKind::kEmail, formatEmailFile(email)};
    }
    return change;
}

}  // namespace orvc
