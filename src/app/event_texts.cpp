#include "app/event_texts.h"

#include "resources/resource.h"

namespace orvc {
namespace {

unsigned statusText(const EventRecord& record) {
    // An Event of which it is not known whether it is switched on does not pass for available.
    if (record.disabled != 0u) return IDS_STATUS_DISABLED;
    return record.badData == 1u ? IDS_STATUS_ERROR : IDS_STATUS_AVAILABLE;
}

unsigned responseText(OptionalDword code) {
    const bool isKnown = code && *code <= static_cast<std::uint32_t>(Response::kTtsMessage);
    return isKnown ? IDS_RESPONSE_NONE + *code : IDS_RESPONSE_UNKNOWN;
}

}  // namespace

std::string eventCellText(const EventRecord& record, EventColumn column, const StringTable& strings,
                          const Clock& clock) {
    switch (column) {
        case EventColumn::kName:
            return record.name.value_or(std::string());
        case EventColumn::kStatus:
            return strings.text(statusText(record));
        case EventColumn::kLastEvent: {
            const std::uint32_t lastTriggered = record.lastTriggered.value_or(0);
            return lastTriggered == 0 ? strings.text(IDS_NEVER) : formatDate(clock.toLocal(lastTriggered));
        }
        case EventColumn::kResponse:
            return strings.text(responseText(record.responseType));
    }
    return {};
}

}  // namespace orvc
