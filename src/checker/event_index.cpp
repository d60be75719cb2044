#include "checker/event_index.h"

#include <algorithm>

#include "checker/problem_rules.h"
#include "model/mac.h"

namespace orvc {
namespace {

void append(std::vector<const EventRecord*>& records, std::span<EventIndex::Entry* const> users) {
    for (const EventIndex::Entry* const user : users)
        records.push_back(user->record);
}

std::vector<const EventRecord*> recordsOf(std::span<EventIndex::Entry* const> users) {
    std::vector<const EventRecord*> records;
    append(records, users);
    return records;
}

}  // namespace

// An empty text stands for nothing, but with the mail server.
EventIndex::Wanted EventIndex::thingsOf(const EventRecord& record) {
    const auto device = [](bool isUsed, const KSMac& mac) {
        return ThingView{UsedKind::kDevice, isUsed && !isNoDevice(mac) ? bytesOf(mac) : std::string_view()};
    };
    const bool isEmail = responseOf(record) == Response::kEmail;
    const bool isAudio = responseOf(record) == Response::kServerAudio;
    Wanted wanted{device(hasSourcePlace(record), record.triggerDevice),
                  device(hasDestinationPlace(record), record.responseDevice),
                  {UsedKind::kGroup, receivedText(record.triggerGroupKey)},
                  {UsedKind::kGroup, receivedText(record.responseGroupKey)},
                  {UsedKind::kSchedule, receivedText(record.scheduleKey)},
                  {UsedKind::kMessage, isAudio ? receivedText(record.messageKey) : std::string_view()}};
    if (wanted[1].text == wanted[0].text) wanted[1].text = {};
    if (wanted[3].text == wanted[2].text) wanted[3].text = {};
    // An e-mail goes to no device.
    if (isEmail) wanted[1].kind = UsedKind::kMailServer;
    return wanted;
}

void EventIndex::update(Entry& entry) {
    const Wanted wanted = thingsOf(*entry.record);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        Entry::Place& place = entry.places_[i];
        const bool isSame = place.thing != nullptr && Equal()(place.thing->first, wanted[i]);
        if (isSame) continue;
        if (place.thing != nullptr) leave(place);
        if (!wanted[i].text.empty() || wanted[i].kind == UsedKind::kMailServer) join(entry, place, wanted[i]);
    }
}

void EventIndex::remove(Entry& entry) {
    for (Entry::Place& place : entry.places_)
        if (place.thing != nullptr) leave(place);
}

void EventIndex::join(Entry& entry, Entry::Place& place, const ThingView& wanted) {
    auto found = things_.find(wanted);
    if (found == things_.end()) found = things_.emplace(Thing{wanted.kind, std::string(wanted.text)}, Users()).first;
    Users& users = found->second;
    users.push_back(&entry);
    place = {&*found, static_cast<std::uint32_t>(users.size() - 1)};
}

// The last user takes the free position.
void EventIndex::leave(Entry::Place& place) {
    Things::value_type& thing = *std::exchange(place.thing, nullptr);
    Users& users = thing.second;
    Entry& last = *users.back();
    if (place.position != users.size() - 1) {
        users[place.position] = &last;
        std::ranges::find(last.places_, &thing, &Entry::Place::thing)->position = place.position;
    }
    users.pop_back();
    if (users.empty()) things_.erase(things_.find(thing.first));
}

std::span<EventIndex::Entry* const> EventIndex::users(UsedKind kind, std::string_view text) const {
    const auto found = things_.find(ThingView{kind, text});
    if (found == things_.end()) return {};
    return found->second;
}

std::array<std::span<EventIndex::Entry* const>, 2> EventIndex::scheduleUsers(std::string_view key) const {
    const ScheduleRecord* const schedule = schedules_.find(key);
    if (schedule == nullptr) return {users(UsedKind::kSchedule, key)};
    // The text is another Schedule's name.
    if (schedule->key != key) return {};
    const bool isFoundByName = schedule->name != key && schedules_.find(*schedule->name) == schedule;
    return {users(UsedKind::kSchedule, key),
            isFoundByName ? users(UsedKind::kSchedule, *schedule->name) : std::span<Entry* const>()};
}

std::size_t EventIndex::countUsersOfSchedule(std::string_view key) const {
    const auto [byKey, byName] = scheduleUsers(key);
    return byKey.size() + byName.size();
}

std::vector<const EventRecord*> EventIndex::usersOfDevice(const KSMac& mac) const {
    return recordsOf(users(UsedKind::kDevice, bytesOf(mac)));
}

std::vector<const EventRecord*> EventIndex::usersOfGroup(std::string_view key) const {
    return recordsOf(users(UsedKind::kGroup, key));
}

std::vector<const EventRecord*> EventIndex::usersOfMessage(std::string_view key) const {
    return recordsOf(users(UsedKind::kMessage, key));
}

std::vector<const EventRecord*> EventIndex::usersOfSchedule(std::string_view key) const {
    std::vector<const EventRecord*> records;
    for (const auto users : scheduleUsers(key))
        append(records, users);
    return records;
}

}  // namespace orvc
