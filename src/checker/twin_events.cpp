#include "checker/twin_events.h"

#include <functional>

#include "checker/problem_rules.h"
#include "model/mac.h"

namespace orvc {
namespace {

constexpr std::uint32_t kDelayed = 1;

std::string_view contentOf(const EventRecord& record) {
    switch (responseOf(record)) {
        case Response::kServerAudio:
            return receivedText(record.messageKey);
        case Response::kTtsFile:
            return receivedText(record.ttsFilename);
        case Response::kEmail:
        case Response::kTtsMessage:
            return receivedText(record.fileGuid);
        default:
            return {};
    }
}

std::size_t mix(std::size_t hash, std::size_t more) {
    constexpr auto kOdd = static_cast<std::size_t>(0x9E3779B97F4A7C15);
    return (hash ^ more) * kOdd + (hash >> 7);
}

std::uint64_t numberOf(const KSMac& mac) {
    std::uint64_t number = 0;
    for (const std::uint8_t byte : mac)
        number = number << 8 | byte;
    return number;
}

}  // namespace

std::optional<EventDeed> deedOf(const EventRecord& record, const ScheduleRecord* schedule) {
    constexpr auto kLastTrigger = static_cast<std::uint32_t>(Trigger::kTimeOfDay);
    constexpr auto kLastResponse = static_cast<std::uint32_t>(Response::kTtsMessage);
    EventDeed deed;
    deed.trigger = record.triggerType.value_or(0);
    deed.response = record.responseType.value_or(0);
    if (isDisabled(record) || deed.trigger == 0 || deed.trigger > kLastTrigger || deed.response == 0 ||
        deed.response > kLastResponse)
        return std::nullopt;
    if (record.timeoutType == kDelayed) deed.delay = record.timeoutSeconds;
    if (triggerOf(record) == Trigger::kTimeOfDay) deed.timeOfDay = record.timeOfDay;
    // A device that is named comes before a group.
    if (hasSourcePlace(record)) {
        deed.sourceDevice = record.triggerDevice;
        if (isNoDevice(record.triggerDevice)) deed.sourceGroup = receivedText(record.triggerGroupKey);
    }
    if (hasDestinationPlace(record)) {
        deed.destinationDevice = record.responseDevice;
        if (isNoDevice(record.responseDevice)) deed.destinationGroup = receivedText(record.responseGroupKey);
    }
    if (schedule != nullptr)
        deed.scheduleId = schedule->id;
    else
        deed.schedule = receivedText(record.scheduleKey);
    deed.content = contentOf(record);
    return deed;
}

std::size_t hashOf(const EventDeed& deed) {
    std::size_t hash = 0;
    for (const std::uint32_t number : {deed.trigger, deed.response, deed.delay, deed.timeOfDay, deed.scheduleId})
        hash = mix(hash, number);
    for (const KSMac* const mac : {&deed.sourceDevice, &deed.destinationDevice})
        hash = mix(hash, std::hash<std::uint64_t>{}(numberOf(*mac)));
    for (const std::string_view text : {deed.sourceGroup, deed.destinationGroup, deed.schedule, deed.content})
        if (!text.empty()) hash = mix(hash + 1, std::hash<std::string_view>{}(text));
    return hash;
}

std::optional<EventDeed> TwinEvents::deedOf(const Member& member) const {
    return orvc::deedOf(*member.record, schedules_.find(receivedText(member.record->scheduleKey)));
}

bool TwinEvents::update(Member& member) {
    const auto deed = deedOf(member);
    if (!deed && member.ring_ == nullptr) return false;
    if (deed && member.ring_ != nullptr && member.ring_->first == hashOf(*deed)) {
        // Alone, it takes its ring along to whatever it does.
        const Member* const twin = member.twin();
        if (twin == nullptr || deedOf(*twin) == deed) return false;
    }
    leave(member);
    if (deed) join(member, *deed);
    return true;
}

void TwinEvents::join(Member& member, const EventDeed& deed) {
    const std::size_t hash = hashOf(deed);
    auto [ring, end] = rings_.equal_range(hash);
    while (ring != end && deedOf(*ring->second) != deed)
        ++ring;
    if (ring == end) {
        ring = rings_.emplace(hash, &member);
        member.next_ = member.previous_ = &member;
    } else {
        Member& first = *ring->second;
        member.next_ = first.next_;
        member.previous_ = &first;
        member.next_->previous_ = first.next_ = &member;
    }
    member.ring_ = &*ring;
}

void TwinEvents::leave(Member& member) {
    if (member.ring_ == nullptr) return;
    if (member.twin() == nullptr) {
        auto ring = rings_.equal_range(member.ring_->first).first;
        while (&*ring != member.ring_)
            ++ring;
        rings_.erase(ring);
    } else {
        member.ring_->second = member.next_;
        member.next_->previous_ = member.previous_;
        member.previous_->next_ = member.next_;
    }
    member.next_ = member.previous_ = nullptr;
    member.ring_ = nullptr;
}

}  // namespace orvc
