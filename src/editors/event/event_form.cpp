#include "editors/event/event_form.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

constexpr std::int64_t kSecondsPerMinute = 60;
constexpr auto kLastResponse = static_cast<std::uint32_t>(Response::kTtsMessage);
constexpr std::size_t kDisplayLength = 61;

bool needsDestination(Response response) {
    return response != Response::kNone && response != Response::kEmail;
}

bool isComplete(const EventEmail& email) {
    return !email.from.empty() && !email.to.empty() && !email.subject.empty() && !email.body.empty();
}

// Compared as a signed byte, as the server's own tools do.
bool isControlByte(char c) {
    return static_cast<signed char>(c) < 0x20;
}

}  // namespace

std::string shortenForDisplay(const std::string& text, const std::string& emptyText) {
    const auto begin = std::ranges::find_if_not(text, isControlByte);
    const auto firstControl = std::find_if(begin, text.end(), isControlByte);
    const auto length = std::min(static_cast<std::size_t>(firstControl - begin), kDisplayLength);
    if (length == 0) return emptyText;
    std::string shown(begin, begin + static_cast<std::ptrdiff_t>(length));
    if (begin + static_cast<std::ptrdiff_t>(length) != text.end()) shown += "...";
    return shown;
}

EventForm::EventForm(const StringTable& strings, const Directory& directory, const ScheduleList& schedules)
    : strings_(strings), directory_(directory), scheduleList_(schedules) {
    sources_.push_back({PlaceKind::kNone, {}, {}, strings.text(IDS_SELECT_SOURCE)});
    destinations_.push_back({PlaceKind::kNone, {}, {}, strings.text(IDS_SELECT_DESTINATION)});
    fillSchedules();
}

// ---------------------------------------------------------------------------------------------------------------------
// Loading

LoadResult EventForm::load(const EventRecord& record) {
    LoadResult result;
    name_ = record.name.value_or(std::string());
    const std::uint32_t trigger = record.triggerType.value_or(0);
    trigger_ = trigger < kTriggerCount ? static_cast<Trigger>(trigger) : Trigger::kNone;
    loadTiming(record);
    loadSource(record, result);
    loadSchedule(record, result);
    loadResponse(record, result);
    // Not known counts as disabled, as in the list.
    disabled_ = record.disabled.value_or(1) != 0;
    return result;
}

// A delay from one minute up loses its seconds; one from two minutes up selects no unit. The stored timing is shown
// even where the trigger does not use it.
void EventForm::loadTiming(const EventRecord& record) {
    const std::uint32_t type = record.timeoutType;
    timeout_ = type == 0 ? Timeout::kImmediately : type == 1 ? Timeout::kAfter : Timeout::kNone;
    timeoutUnit_ = record.timeoutSeconds / kSecondsPerMinute;
    timeoutValue_ = timeoutUnit_ != 0 ? timeoutUnit_ : record.timeoutSeconds % kSecondsPerMinute;
    if (hasTimeout(trigger_)) resetDelayUnlessUsed();
}

void EventForm::loadSource(const EventRecord& record, LoadResult& result) {
    switch (trigger_) {
        case Trigger::kServerConnection:
            fillSources(SourceKind::kServer);
            return;
        case Trigger::kTimeOfDay:
            fillSources(SourceKind::kTimesOfDay);
            if (record.timeOfDay < kTimeOfDayCount - 1)
                source_ = static_cast<int>(record.timeOfDay) + 1;
            else
                result.messages.push_back({IDS_NO_TIME_OF_DAY, IDS_SOURCE_UNASSIGNED});
            return;
        default:
            break;
    }
    fillSources(SourceKind::kPlaces);
    if (const auto found = findPlace(sources_, record.triggerDevice, record.triggerGroupKey.value_or("")))
        source_ = static_cast<int>(*found);
    else
        result.messages.push_back({IDS_NO_SOURCE, IDS_SOURCE_UNASSIGNED});
}

// A record names its Schedule by key; one that another tool wrote may name it by name.
void EventForm::loadSchedule(const EventRecord& record, LoadResult& result) {
    const std::string wanted = record.scheduleKey.value_or("");
    const auto begin = scheduleChoices_.begin() + 1;
    auto found = std::find_if(begin, scheduleChoices_.end(), [&](const auto& choice) { return choice.key == wanted; });
    if (found == scheduleChoices_.end())
        found = std::find_if(begin, scheduleChoices_.end(), [&](const auto& choice) { return choice.name == wanted; });
    if (found != scheduleChoices_.end())
        schedule_ = static_cast<int>(found - scheduleChoices_.begin());
    else
        result.messages.push_back({IDS_NO_SCHEDULE, IDS_SCHEDULE_UNASSIGNED});
}

void EventForm::loadResponse(const EventRecord& record, LoadResult& result) {
    const auto offered = responsesFor(trigger_);
    const std::uint32_t code = record.responseType.value_or(0);
    const auto stored = code <= kLastResponse ? static_cast<Response>(code) : Response::kNone;
    ++responseRevision_;
    // What belongs to a response that the trigger does not offer is kept for an operator who chooses another trigger.
    if (code > kLastResponse || std::ranges::find(offered, stored) == offered.end())
        result.messages.push_back({IDS_NO_RESPONSE, IDS_RESPONSE_UNASSIGNED});
    else
        response_ = stored;
    if (needsDestination(stored)) {
        // Nothing has happened since the sources were listed.
        fillDestinations(sourceKind_ == SourceKind::kPlaces);
        if (const auto found = findPlace(destinations_, record.responseDevice, record.responseGroupKey.value_or("")))
            destination_ = static_cast<int>(*found);
        else
            result.messages.push_back({IDS_NO_DESTINATION, IDS_DESTINATION_UNASSIGNED});
    }
    if (stored == Response::kServerAudio) messageKey_ = record.messageKey.value_or("");
    if (stored == Response::kTtsFile) ttsFilename_ = record.ttsFilename.value_or("");
    if (stored == Response::kTtsMessage) result.fetch = PayloadKind::kSpokenText;
    if (stored == Response::kEmail) result.fetch = PayloadKind::kEmail;
    responseLine_ = describe(stored);
}

// ---------------------------------------------------------------------------------------------------------------------
// What the operator does

void EventForm::chooseTrigger(int index) {
    trigger_ = index >= 0 && index < kTriggerCount ? static_cast<Trigger>(index) : Trigger::kNone;
    if (!hasTimeout(trigger_)) timeout_ = Timeout::kNone;
    resetDelayUnlessUsed();
    fitSourcesToTrigger();
    if (trigger_ == Trigger::kServerConnection && scheduleChoices_.size() < 2) fillSchedules();
    // The responses that another trigger does not offer go; one that it offers too stays chosen.
    const auto offered = responsesFor(trigger_);
    ++responseRevision_;
    if (std::ranges::find(offered, response_) == offered.end()) chooseResponse(0);
}

void EventForm::chooseTimeout(int index) {
    timeout_ = index == 1 ? Timeout::kImmediately : index == 2 ? Timeout::kAfter : Timeout::kNone;
    resetDelayUnlessUsed();
}

void EventForm::resetDelayUnlessUsed() {
    if (timeout_ == Timeout::kAfter) return;
    timeoutValue_ = 0;
    timeoutUnit_ = 0;
}

void EventForm::chooseResponse(int index) {
    const auto offered = responsesFor(trigger_);
    const auto position = static_cast<std::size_t>(index);
    response_ = index >= 0 && position < offered.size() ? offered[position] : Response::kNone;
    if (needsDestination(response_) && !destinationsFilled_) fillDestinations();
    rewriteResponseLine();
}

void EventForm::chooseDestination(int index) {
    destination_ = index;
    rewriteResponseLine();
}

void EventForm::setMessageKey(std::string key) {
    messageKey_ = std::move(key);
    rewriteResponseLine();
}

void EventForm::setTtsFilename(std::string filename) {
    ttsFilename_ = std::move(filename);
    rewriteResponseLine();
}

void EventForm::setSpokenText(std::string text) {
    spokenText_ = std::move(text);
    rewriteResponseLine();
}

void EventForm::setEmail(EventEmail email) {
    email_ = std::move(email);
    rewriteResponseLine();
}

void EventForm::takeFetched(FetchedPayload fetched) {
    const bool isEmail = fetched.kind == PayloadKind::kEmail;
    if (fetched.arrived && isEmail) email_ = std::move(fetched.email);
    if (fetched.arrived && !isEmail) spokenText_ = std::move(fetched.text);
    if (response_ != (isEmail ? Response::kEmail : Response::kTtsMessage)) return;
    if (!fetched.arrived)
        responseLine_ = strings_.text(isEmail ? IDS_EMAIL_ERROR : IDS_TTS_ERROR);
    else
        responseLine_ = isEmail ? describeEmail() : describeSpokenText();
}

void EventForm::refreshSchedules() {
    const std::string key = scheduleChoices_[static_cast<std::size_t>(schedule_)].key;
    fillSchedules();
    const auto found = std::ranges::find(scheduleChoices_, key, &ScheduleChoice::key);
    schedule_ = found != scheduleChoices_.end() ? static_cast<int>(found - scheduleChoices_.begin()) : 0;
}

// ---------------------------------------------------------------------------------------------------------------------
// Lists

void EventForm::fitSourcesToTrigger() {
    SourceKind wanted = SourceKind::kPlaces;
    if (trigger_ == Trigger::kNone) return;
    if (trigger_ == Trigger::kServerConnection) wanted = SourceKind::kServer;
    if (trigger_ == Trigger::kTimeOfDay) wanted = SourceKind::kTimesOfDay;
    if (wanted != sourceKind_) fillSources(wanted);
}

void EventForm::fillSources(SourceKind kind) {
    sourceKind_ = kind;
    source_ = 0;
    sources_.clear();
    if (kind == SourceKind::kPlaces) sources_ = listPlaces(directory_, strings_, IDS_SELECT_SOURCE);
    ++sourceRevision_;
}

std::vector<std::string> EventForm::otherSources() const {
    if (sourceKind_ == SourceKind::kServer) return {strings_.text(IDS_SOURCE_SERVER)};
    return listTimesOfDay(strings_);
}

void EventForm::fillSchedules() {
    scheduleChoices_.assign(1, {std::string(), strings_.text(IDS_SELECT_SCHEDULE)});
    for (const ScheduleRecord& record : scheduleList_.records())
        if (record.key && record.name) scheduleChoices_.push_back({*record.key, *record.name});
    ++scheduleRevision_;
}

std::vector<std::string> EventForm::responseTexts() const {
    std::vector<std::string> texts;
    for (const Response response : responsesFor(trigger_))
        texts.push_back(responseName(response, strings_));
    return texts;
}

int EventForm::responseIndex() const {
    const auto offered = responsesFor(trigger_);
    const auto found = std::ranges::find(offered, response_);
    return found != offered.end() ? static_cast<int>(found - offered.begin()) : 0;
}

void EventForm::fillDestinations(bool asSources) {
    if (asSources) {
        destinations_ = sources_;
        destinations_.front().text = strings_.text(IDS_SELECT_DESTINATION);
    } else {
        destinations_ = listPlaces(directory_, strings_, IDS_SELECT_DESTINATION);
    }
    destinationsFilled_ = true;
    destination_ = 0;
    ++destinationRevision_;
}

// ---------------------------------------------------------------------------------------------------------------------
// The chain

bool EventForm::isSourceChosen() const {
    if (trigger_ == Trigger::kServerConnection) return sourceKind_ == SourceKind::kServer;
    return source_ > 0;
}

bool EventForm::isTimingComplete() const {
    if (!hasTimeout(trigger_)) return true;
    return timeout_ == Timeout::kImmediately || (timeout_ == Timeout::kAfter && timeoutValue_ != 0);
}

bool EventForm::isPayloadComplete() const {
    switch (response_) {
        case Response::kServerAudio:
            return !messageKey_.empty();
        case Response::kTtsFile:
            return !ttsFilename_.empty();
        case Response::kTtsMessage:
            return !spokenText_.empty();
        case Response::kEmail:
            return isComplete(email_);
        default:
            return true;
    }
}

EventFormEnabling EventForm::enabling() const {
    EventFormEnabling enabled;
    if (name_.empty()) return enabled;
    enabled.trigger = true;
    if (trigger_ == Trigger::kNone) return enabled;
    enabled.source = true;
    enabled.timeout = hasTimeout(trigger_);
    enabled.timeoutValueAndUnit = enabled.timeout && timeout_ == Timeout::kAfter;
    if (!isSourceChosen() || !isTimingComplete()) return enabled;
    enabled.schedule = true;
    if (schedule_ <= 0) return enabled;
    enabled.response = true;
    if (response_ == Response::kNone) return enabled;
    enabled.destination = needsDestination(response_);
    enabled.select = response_ != Response::kActivateRelay && response_ != Response::kDeactivateRelay;
    enabled.save = (!enabled.destination || destination_ > 0) && isPayloadComplete();
    return enabled;
}

// ---------------------------------------------------------------------------------------------------------------------
// The response line

void EventForm::rewriteResponseLine() {
    responseLine_ = describe(response_);
}

std::string EventForm::describe(Response response) const {
    const bool hasDestination = destination_ > 0;
    switch (response) {
        case Response::kActivateRelay:
        case Response::kDeactivateRelay: {
            const bool activates = response == Response::kActivateRelay;
            return fillIn(strings_.text(hasDestination ? IDS_RELAY_CHOSEN : IDS_RELAY_SELECT),
                          {strings_.text(activates ? IDS_RELAY_ACTIVATION : IDS_RELAY_DEACTIVATION)});
        }
        case Response::kServerAudio:
            if (!messageKey_.empty()) return describeAudio();
            return strings_.text(hasDestination ? IDS_AUDIO_SELECT : IDS_AUDIO_SELECT_DESTINATION);
        case Response::kTtsFile:
            if (!ttsFilename_.empty()) return fillIn(strings_.text(IDS_TTS_FILE_CHOSEN), {ttsFilename_});
            return strings_.text(hasDestination ? IDS_TTS_SELECT : IDS_TTS_SELECT_DESTINATION);
        case Response::kTtsMessage:
            if (!spokenText_.empty()) return describeSpokenText();
            return strings_.text(hasDestination ? IDS_TTS_SELECT : IDS_TTS_SELECT_DESTINATION);
        case Response::kEmail:
            if (isComplete(email_)) return describeEmail();
            return strings_.text(IDS_EMAIL_SELECT);
        default:
            return {};
    }
}

std::string EventForm::describeSpokenText() const {
    return fillIn(strings_.text(IDS_TTS_TEXT_CHOSEN), {shortenForDisplay(spokenText_, strings_.text(IDS_EMPTY_FIELD))});
}

std::string EventForm::describeEmail() const {
    return fillIn(strings_.text(IDS_EMAIL_CHOSEN), {email_.to, email_.subject});
}

std::string EventForm::describeAudio() const {
    const AudioMessage* message = directory_.findMessage(messageKey_);
    if (message == nullptr) return fillIn(strings_.text(IDS_AUDIO_NOT_FOUND), {messageKey_});
    return fillIn(strings_.text(IDS_AUDIO_CHOSEN), {message->name()});
}

// ---------------------------------------------------------------------------------------------------------------------
// Saving

const Place* EventForm::chosenPlace(const std::vector<Place>& places, int index) const {
    const auto position = static_cast<std::size_t>(index);
    return index > 0 && position < places.size() ? &places[position] : nullptr;
}

void EventForm::fill(EventRecord& record) const {
    EventRecord filled = record;
    filled.name = name_;
    filled.triggerType = static_cast<std::uint32_t>(trigger_);
    const bool isDelayed = hasTimeout(trigger_) && timeout_ == Timeout::kAfter;
    const std::int64_t delay = timeoutUnit_ != 0 ? timeoutValue_ * kSecondsPerMinute : timeoutValue_;
    filled.timeoutType = isDelayed ? 1 : 0;
    filled.timeoutSeconds = isDelayed ? static_cast<std::uint32_t>(delay) : 0;
    filled.triggerDevice = {};
    filled.triggerGroupKey = std::string();
    filled.timeOfDay = 0;
    if (sourceKind_ == SourceKind::kTimesOfDay && source_ > 0)
        filled.timeOfDay = static_cast<std::uint32_t>(source_ - 1);
    if (const Place* source = chosenPlace(sources_, source_); source != nullptr && sourceKind_ == SourceKind::kPlaces) {
        filled.triggerDevice = source->device;
        filled.triggerGroupKey = source->group;
    }
    filled.scheduleKey = scheduleChoices_[static_cast<std::size_t>(schedule_)].key;
    filled.responseType = static_cast<std::uint32_t>(response_);
    filled.responseDevice = {};
    filled.responseGroupKey = std::string();
    if (const Place* destination = chosenPlace(destinations_, destination_);
        destination != nullptr && needsDestination(response_)) {
        filled.responseDevice = destination->device;
        filled.responseGroupKey = destination->group;
    }
    filled.messageKey = response_ == Response::kServerAudio ? messageKey_ : std::string();
    filled.ttsFilename = response_ == Response::kTtsFile ? ttsFilename_ : std::string();
    filled.fileGuid = std::string();
    filled.disabled = disabled_ ? 1 : 0;
    record = std::move(filled);
}

}  // namespace orvc
