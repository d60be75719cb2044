#include "checker/event_checker.h"

#include <exception>
#include <utility>

#include "checker/problem_rules.h"

namespace orvc {

EventChecker::EventChecker(const EventList& events, Directory& directory, ScheduleList& schedules, MailSettings& mail)
    : events_(events),
      directory_(directory),
      scheduleList_(schedules),
      mail_(mail),
      schedules_(schedules),
      index_(schedules_),
      twins_(schedules_) {
    directory_.observe(this);
    scheduleList_.observe(this);
    mail_.observe(this);
}

EventChecker::~EventChecker() {
    directory_.observe(nullptr);
    scheduleList_.observe(nullptr);
    mail_.observe(nullptr);
}

// ---------------------------------------------------------------------------------------------------------------------
// All Events at once

void EventChecker::setReady(bool ready) {
    if (isReady_ == ready) return;
    isReady_ = ready;
    if (ready) return recover();
    forget();
    guarded([this] {
        if (observer_ != nullptr) observer_->everyEventAffected();
    });
}

void EventChecker::recover() {
    if (isReady_ && !isJudging_) guarded([this] { workOut(); });
}

// Whatever lacks memory, the next recover() works everything out.
template <typename Work>
void EventChecker::guarded(const Work& work) noexcept {
    try {
        work();
    } catch (const std::exception&) {
        forget();
    }
}

void EventChecker::workOut() {
    hasMailServer_ = mail_.hasMailServer();
    entries_.reserve(events_.size());
    for (const EventRecord& record : events_.records()) {
        if (!record.isShown) continue;
        Entry& entry = entryOf(record);
        index_.update(entry);
        updateTwins(entry);
        judge(entry);
    }
    isJudging_ = isTelling_ = true;
    if (observer_ != nullptr) observer_->everyEventAffected();
}

void EventChecker::forget() {
    isJudging_ = isTelling_ = false;
    index_.clear();
    twins_.clear();
    entries_.clear();
    withProblems_ = disabled_ = 0;
}

// ---------------------------------------------------------------------------------------------------------------------
// One Event

EventChecker::Entry& EventChecker::entryOf(const EventRecord& record) {
    const auto [place, isNew] = entries_.try_emplace(&record);
    Entry& entry = place->second;
    if (!isNew) return entry;
    entry.EventIndex::Entry::record = entry.Member::record = &record;
    entry.isNotStored = notStored_.contains(record.key);
    return entry;
}

// Who did the same before and who does it now have another twin, or none.
void EventChecker::updateTwins(Entry& entry) {
    TwinEvents::Member* const former = entry.follower();
    if (!twins_.update(entry)) return;
    for (TwinEvents::Member* const member : {former, entry.follower()}) {
        if (member == nullptr) continue;
        auto& other = static_cast<Entry&>(*member);
        setCodes(other, other.codes);
        tell(member);
    }
}

void EventChecker::judge(Entry& entry) {
    const EventRecord& record = *entry.Member::record;
    const bool isNowDisabled = isDisabled(record);
    if (isNowDisabled != entry.isCountedDisabled) disabled_ += isNowDisabled ? 1 : static_cast<std::size_t>(-1);
    entry.isCountedDisabled = isNowDisabled;
    setCodes(entry, findProblemCodes(record, directory_, scheduleOf(record), hasMailServer_));
}

// `codes` by the rules; what depends on more is added here.
void EventChecker::setCodes(Entry& entry, ProblemSet codes) {
    codes.set(ProblemCode::kSameAs, entry.twin() != nullptr);
    codes.set(ProblemCode::kNotStored, entry.isNotStored);
    codes = withErrorMark(codes, *entry.Member::record);
    if (codes.hasProblem() != entry.codes.hasProblem())
        withProblems_ += codes.hasProblem() ? 1 : static_cast<std::size_t>(-1);
    entry.codes = codes;
}

const ScheduleRecord* EventChecker::scheduleOf(const EventRecord& record) const {
    return record.scheduleKey ? schedules_.find(*record.scheduleKey) : nullptr;
}

void EventChecker::tell(const TwinEvents::Member* member) {
    if (isTelling_ && member != nullptr && observer_ != nullptr) observer_->eventAffected(*member->record);
}

void EventChecker::setNotStored(std::string_view eventKey, std::vector<std::string> values) {
    const std::string key(eventKey);
    if (values.empty())
        notStored_.erase(key);
    else
        notStored_[key] = std::move(values);
    const EventRecord* const record = events_.find(key);
    const auto found = entries_.find(record);
    if (found == entries_.end()) return;
    Entry& entry = found->second;
    entry.isNotStored = notStored_.contains(key);
    setCodes(entry, entry.codes);
    guarded([&] { tell(&entry); });
}

ProblemSet EventChecker::codesOf(const EventRecord& record) const {
    const auto found = entries_.find(&record);
    return found != entries_.end() ? found->second.codes : ProblemSet();
}

std::vector<Problem> EventChecker::problemsOf(const EventRecord& record) const {
    const auto found = entries_.find(&record);
    if (found == entries_.end() || found->second.codes.isEmpty()) return {};
    const Entry& entry = found->second;
    KnownProblems known;
    if (entry.twin() != nullptr) known.sameAs = entry.twin()->record->key;
    if (const auto values = notStored_.find(record.key); values != notStored_.end()) known.notStored = &values->second;
    return listProblems(entry.codes, record, directory_, known);
}

// ---------------------------------------------------------------------------------------------------------------------
// Events that change

void EventChecker::eventChanged(const EventRecord& record, bool renamed) {
    if (!isJudging_) return;
    guarded([&] {
        Entry& entry = entryOf(record);
        index_.update(entry);
        updateTwins(entry);
        judge(entry);
        if (renamed) tell(entry.follower());  // its problem tells this name
    });
}

void EventChecker::shownEventLacksValue(const EventRecord& record) {
    eventChanged(record, true);
    guarded([&] {
        if (isTelling_ && observer_ != nullptr) observer_->eventAffected(record);
    });
}

void EventChecker::eventGone(const EventRecord& record) {
    notStored_.erase(record.key);
    const auto found = entries_.find(&record);
    if (found == entries_.end()) return;
    Entry& entry = found->second;
    TwinEvents::Member* const follower = entry.follower();
    twins_.leave(entry);
    index_.remove(entry);
    if (entry.codes.hasProblem()) --withProblems_;
    if (entry.isCountedDisabled) --disabled_;
    entries_.erase(found);
    if (follower == nullptr) return;
    auto& other = static_cast<Entry&>(*follower);
    setCodes(other, other.codes);
    guarded([&] { tell(follower); });
}

// They come again; until then there are none.
void EventChecker::eventsCleared() {
    const bool wasJudging = isJudging_;
    forget();
    notStored_.clear();
    isJudging_ = isTelling_ = wasJudging;
}

// ---------------------------------------------------------------------------------------------------------------------
// What Events use changes

void EventChecker::judgeUsers(UsedKind kind, std::string_view text) {
    for (EventIndex::Entry* const user : index_.users(kind, text)) {
        auto& entry = static_cast<Entry&>(*user);
        if (kind == UsedKind::kSchedule) updateTwins(entry);
        judge(entry);
        tell(&entry);
    }
}

void EventChecker::judgeEveryEvent() {
    if (!isJudging_ || entries_.empty()) return;
    guarded([this] {
        isTelling_ = false;
        for (auto& [record, entry] : entries_) {
            updateTwins(entry);
            judge(entry);
        }
        isTelling_ = true;
        if (observer_ != nullptr) observer_->everyEventAffected();
    });
}

void EventChecker::deviceChanged(const Device& device) {
    guarded([&] { judgeUsers(UsedKind::kDevice, EventIndex::bytesOf(device.mac())); });
}

void EventChecker::groupChanged(const Group& group) {
    guarded([&] { judgeUsers(UsedKind::kGroup, group.key()); });
}

void EventChecker::messageChanged(const AudioMessage& message) {
    guarded([&] { judgeUsers(UsedKind::kMessage, message.key()); });
}

void EventChecker::directoryCleared() {
    judgeEveryEvent();
}

void EventChecker::scheduleChanged(const ScheduleRecord& record, std::string_view former) {
    schedules_.forget();
    guarded([&] {
        if (record.key) judgeUsers(UsedKind::kSchedule, *record.key);
        if (record.name && record.name != record.key) judgeUsers(UsedKind::kSchedule, *record.name);
        if (!former.empty()) judgeUsers(UsedKind::kSchedule, former);
    });
}

void EventChecker::scheduleGone(const ScheduleRecord& record) {
    scheduleChanged(record, {});
}

void EventChecker::schedulesCleared() {
    schedules_.forget();
    judgeEveryEvent();
}

void EventChecker::mailSettingsChanged() {
    if (mail_.hasMailServer() == hasMailServer_) return;
    hasMailServer_ = mail_.hasMailServer();
    guarded([this] { judgeUsers(UsedKind::kMailServer, {}); });
}

}  // namespace orvc
