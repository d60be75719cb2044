#include "checker/event_names.h"

#include "model/mac.h"

namespace orvc {
namespace {

std::string nameOrKey(std::string_view name, std::string_view key) {
    return std::string(name.empty() ? key : name);
}

}  // namespace

std::string EventNames::device(const KSMac& mac) const {
    const Device* const device = directory.findDevice(mac);
    return device != nullptr && !device->name().empty() ? std::string(device->name()) : formatMac(mac);
}

std::string EventNames::schedule(std::string_view keyOrName) const {
    const ScheduleRecord* const record = schedules.find(keyOrName);
    return nameOrKey(record != nullptr ? *record->name : std::string_view(), keyOrName);
}

std::string EventNames::message(std::string_view key) const {
    const AudioMessage* const message = directory.findMessage(key);
    return nameOrKey(message != nullptr ? message->name() : std::string_view(), key);
}

std::string EventNames::event(std::string_view key) const {
    const EventRecord* const record = events.find(key);
    return nameOrKey(record != nullptr && record->name ? *record->name : std::string_view(), key);
}

}  // namespace orvc
