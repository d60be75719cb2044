#include "session/event_copier.h"

#include <utility>

namespace orvc {
namespace {

PayloadKind payloadOf(const EventRecord& record) {
    if (record.fileGuid.value_or("").empty()) return PayloadKind::kNone;
    switch (static_cast<Response>(record.responseType.value_or(0))) {
        case Response::kEmail:
            return PayloadKind::kEmail;
        case Response::kTtsMessage:
            return PayloadKind::kSpokenText;
        default:
            return PayloadKind::kNone;
    }
}

PayloadFile fileOf(const FetchedPayload& fetched) {
    const bool isEmail = fetched.kind == PayloadKind::kEmail;
    return {fetched.kind, isEmail ? formatEmailFile(fetched.email) : formatTtsFile(fetched.text)};
}

}  // namespace

void EventCopier::start(const EventRecord& original, const std::string& key, const std::string& name) {
    cancel();
    key_ = key;
    name_ = name;
    original_ = original;
    if (const PayloadKind kind = payloadOf(original); kind != PayloadKind::kNone)
        fetcher_.start(kind, original.fileGuid.value_or(""));
}

void EventCopier::cancel() {
    fetcher_.cancel(fetcher_.kind());
    original_.reset();
}

std::optional<EventCopier::Copy> EventCopier::poll() {
    if (!original_) return std::nullopt;
    PayloadFile payload;
    bool isWhole = true;
    if (fetcher_.kind() != PayloadKind::kNone) {
        const std::optional<FetchedPayload> fetched = fetcher_.poll();
        if (!fetched) return std::nullopt;
        isWhole = fetched->arrived;
        if (isWhole) payload = fileOf(*fetched);
    }
    Copy copy{original_->name.value_or(""), std::nullopt};
    if (isWhole) copy.change = changeToDuplicate(*original_, key_, name_, std::move(payload));
    original_.reset();
    return copy;
}

}  // namespace orvc
