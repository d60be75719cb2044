#include "checker/problem_rules.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/mac.h"
#include "support/time_of_day.h"

namespace orvc {
namespace {

constexpr std::uint32_t kBad = 1;
constexpr int kQuartersPerSlot = kQuarterHoursPerDay / WeekMask::kSlotsPerDay;

// One end of an Event: what it names, and which codes tell that the server does not list it.
struct End {
    const KSMac* device;  // null where none is used
    std::string_view group;
    bool usesGroup;
    ProblemCode unknownDevice;
    ProblemCode unknownGroup;
};

std::array<End, 2> endsOf(const EventRecord& record) {
    const auto end = [](bool isPlace, const KSMac& device, const std::optional<std::string>& group,
                        ProblemCode unknownDevice, ProblemCode unknownGroup) {
        // A device that is named comes before a group.
        const bool usesDevice = isPlace && !isNoDevice(device);
        return End{usesDevice ? &device : nullptr, receivedText(group), isPlace && !usesDevice, unknownDevice,
                   unknownGroup};
    };
    return {end(hasSourcePlace(record), record.triggerDevice, record.triggerGroupKey, ProblemCode::kSourceDevice,
                ProblemCode::kSourceGroup),
            end(hasDestinationPlace(record), record.responseDevice, record.responseGroupKey,
                ProblemCode::kDestinationDevice, ProblemCode::kDestinationGroup)};
}

bool isOffline(const End& end, const Directory& directory) {
    const Device* const device = end.device != nullptr ? directory.findDevice(*end.device) : nullptr;
    return device != nullptr && !device->connected;
}

bool isEmptyGroup(const End& end, const Directory& directory) {
    const Group* const group = end.usesGroup && !end.group.empty() ? directory.findGroup(end.group) : nullptr;
    return group != nullptr && group->members.empty() && group->record.expectedMembers == 0;
}

void judge(const End& end, const Directory& directory, ProblemSet& found) {
    if (end.device != nullptr) {
        const Device* const device = directory.findDevice(*end.device);
        if (device == nullptr)
            found.set(end.unknownDevice);
        else if (!device->connected)
            found.set(ProblemCode::kOffline);
    }
    if (end.group.empty()) return;
    if (directory.findGroup(end.group) == nullptr)
        found.set(end.unknownGroup);
    else if (isEmptyGroup(end, directory))
        found.set(ProblemCode::kEmptyGroup);
}

bool isActiveOnSomeDay(const WeekMask& hours, int slot) {
    for (int day = 0; day < WeekMask::kDays; ++day)
        if (hours.isSet(day, slot)) return true;
    return false;
}

bool isTime(const EventRecord& record) {
    return record.timeOfDay < kQuarterHoursPerDay;
}

// Hours that have not been received are not judged.
void judgeTimes(const EventRecord& record, const ScheduleRecord* schedule, ProblemSet& found) {
    if (!receivedText(record.scheduleKey).empty() && schedule == nullptr) found.set(ProblemCode::kSchedule);
    const WeekMask* const hours = schedule != nullptr && schedule->hours ? &*schedule->hours : nullptr;
    const bool isNever = hours != nullptr && *hours == WeekMask{};
    if (isNever) found.set(ProblemCode::kScheduleNever);
    if (triggerOf(record) != Trigger::kTimeOfDay) return;
    const bool isOutside = hours != nullptr && !isNever && isTime(record) &&
                           !isActiveOnSomeDay(*hours, static_cast<int>(record.timeOfDay) / kQuartersPerSlot);
    if (!isTime(record) || isOutside) found.set(ProblemCode::kTimeOutside);
}

void judgeResponse(const EventRecord& record, const Directory& directory, bool hasMailServer, ProblemSet& found) {
    switch (responseOf(record)) {
        case Response::kServerAudio:
            if (directory.findMessage(receivedText(record.messageKey)) == nullptr) found.set(ProblemCode::kMessage);
            break;
        case Response::kEmail:
            if (receivedText(record.fileGuid).empty()) found.set(ProblemCode::kNoEmail);
            if (!hasMailServer) found.set(ProblemCode::kNoMailServer);
            break;
        case Response::kTtsFile:
            if (receivedText(record.ttsFilename).empty()) found.set(ProblemCode::kNoFile);
            break;
        case Response::kTtsMessage:
            if (receivedText(record.fileGuid).empty()) found.set(ProblemCode::kNoText);
            break;
        default:
            break;
    }
}

std::string joinNames(const std::vector<std::string>* names) {
    std::string text;
    if (names == nullptr) return text;
    for (const std::string& name : *names)
        text.append(text.empty() ? "" : ", ").append(name);
    return text;
}

// Lists the problems of a set, code by code.
class Listing {
  public:
    Listing(const EventRecord& record, const Directory& directory, const KnownProblems& known)
        : record_(record), directory_(directory), known_(known), ends_(endsOf(record)) {}

    void add(ProblemCode code) {
        switch (code) {
            case ProblemCode::kSourceDevice:
                return add(code, formatMac(record_.triggerDevice));
            case ProblemCode::kSourceGroup:
                return add(code, record_.triggerGroupKey.value_or(""));
            case ProblemCode::kDestinationDevice:
                return add(code, formatMac(record_.responseDevice));
            case ProblemCode::kDestinationGroup:
                return add(code, record_.responseGroupKey.value_or(""));
            case ProblemCode::kEmptyGroup:
                return addEmptyGroups();
            case ProblemCode::kSchedule:
            case ProblemCode::kScheduleNever:
                return add(code, record_.scheduleKey.value_or(""));
            case ProblemCode::kTimeOutside:
                return add(code, isTime(record_) ? record_.scheduleKey.value_or("") : std::string());
            case ProblemCode::kMessage:
                return add(code, record_.messageKey.value_or(""));
            case ProblemCode::kSameAs:
                return add(code, std::string(known_.sameAs));
            case ProblemCode::kNotStored:
                return add(code, joinNames(known_.notStored));
            case ProblemCode::kOffline:
                return addOfflineDevices();
            default:
                return add(code, {});
        }
    }

    std::vector<Problem> take() { return std::move(problems_); }

  private:
    void add(ProblemCode code, std::string about) {
        Problem problem{code, std::move(about)};
        // A device or group may be the source and the destination.
        if (problems_.empty() || problems_.back() != problem) problems_.push_back(std::move(problem));
    }
    void addEmptyGroups() {
        for (const End& end : ends_)
            if (isEmptyGroup(end, directory_)) add(ProblemCode::kEmptyGroup, std::string(end.group));
    }
    void addOfflineDevices() {
        for (const End& end : ends_)
            if (isOffline(end, directory_)) add(ProblemCode::kOffline, formatMac(*end.device));
    }

    const EventRecord& record_;
    const Directory& directory_;
    const KnownProblems& known_;
    std::array<End, 2> ends_;
    std::vector<Problem> problems_;
};

}  // namespace

bool hasSourcePlace(const EventRecord& record) {
    const Trigger trigger = triggerOf(record);
    return trigger != Trigger::kServerConnection && trigger != Trigger::kTimeOfDay;
}

bool hasDestinationPlace(const EventRecord& record) {
    const Response response = responseOf(record);
    return response != Response::kNone && response != Response::kEmail;
}

ProblemSet findProblemCodes(const EventRecord& record, const Directory& directory, const ScheduleRecord* schedule,
                            bool hasMailServer) {
    ProblemSet found;
    for (const End& end : endsOf(record))
        judge(end, directory, found);
    judgeTimes(record, schedule, found);
    judgeResponse(record, directory, hasMailServer, found);
    return found;
}

ProblemSet withErrorMark(ProblemSet codes, const EventRecord& record) {
    codes.set(ProblemCode::kBadData, false);
    codes.set(ProblemCode::kBadData, record.badData == kBad && !codes.hasProblem());
    return codes;
}

std::vector<Problem> listProblems(ProblemSet codes, const EventRecord& record, const Directory& directory,
                                  const KnownProblems& known) {
    Listing listing(record, directory, known);
    for (std::size_t code = 0; code < kProblemCodeCount; ++code)
        if (codes.contains(static_cast<ProblemCode>(code))) listing.add(static_cast<ProblemCode>(code));
    return listing.take();
}

std::vector<Problem> findProblems(const EventRecord& record, const Directory& directory,
                                  const ScheduleFinder& schedules, const MailSettings& mail) {
    const ScheduleRecord* const schedule = schedules.find(receivedText(record.scheduleKey));
    const ProblemSet codes = findProblemCodes(record, directory, schedule, mail.hasMailServer());
    return listProblems(withErrorMark(codes, record), record, directory, {});
}

}  // namespace orvc
