// The problems of all Events, kept up to date.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "checker/event_index.h"
#include "checker/problem.h"
#include "checker/schedule_finder.h"
#include "checker/twin_events.h"
#include "model/directory.h"
#include "model/event_list.h"
#include "model/mail_settings.h"
#include "model/schedule_list.h"

namespace orvc {

// Who shows what the checker finds. Called on the user-interface thread. No call may change Events, Schedules, the
// directory or the e-mail settings.
class EventCheckerObserver {
  public:
    virtual ~EventCheckerObserver() = default;
    // The Event's problems may have changed, or the name of something that it uses. Its own record has not: of that the
    // EventListObserver hears.
    virtual void eventAffected(const EventRecord& record) = 0;
    // The same of every Event.
    virtual void everyEventAffected() = 0;
};

// Purpose: knows the problems of each Event that is shown, and which Events use a device, a group, a Schedule or an
// audio message. It follows the Events, the directory, the Schedules and the e-mail settings, and is exact after each
// change.
//
// While the configuration is not ready nothing is judged: no Event has a problem, no thing has a user, and changes cost
// nothing.
//
// Thread: user-interface thread. Cost: a change costs what uses the thing that has changed; setReady(true) looks at
// each Event once.
// Lifetime: what the constructor takes outlives the checker, which hears of it by itself, but for the Events: there it
// is one of the observers, before those that ask it. The EventList may be made later than the checker.
// Errors: nothing throws but setNotStored(), observers of its own and what returns a text or a list. What fails for
// lack of memory is worked out again by recover(); until then nothing is known, as while it is not ready.
class EventChecker final : public EventListObserver,
                           private DirectoryObserver,
                           private ScheduleListObserver,
                           private MailSettingsObserver {
  public:
    EventChecker(const EventList& events, Directory& directory, ScheduleList& schedules, MailSettings& mail);
    ~EventChecker() override;
    EventChecker(const EventChecker&) = delete;
    EventChecker& operator=(const EventChecker&) = delete;

    // At most one; it outlives the checker or is taken away with null.
    void observe(EventCheckerObserver* observer) { observer_ = observer; }

    // The configuration is there, or is received or reloaded.
    void setReady(bool ready);
    // Goes on after a lack of memory. Cheap while there is nothing to do; called now and then.
    void recover();

    // Values of an Event that the server did not store, by their names; none takes back what was said before. What was
    // said ends with the Event. Throws std::bad_alloc.
    void setNotStored(std::string_view eventKey, std::vector<std::string> values);

    // The codes of an Event's problems; none for a record that is not shown.
    ProblemSet codesOf(const EventRecord& record) const;
    // The same with what they are about, hints last.
    std::vector<Problem> problemsOf(const EventRecord& record) const;

    // How many Events have more than hints, and how many are disabled.
    std::size_t withProblems() const { return withProblems_; }
    std::size_t disabled() const { return disabled_; }

    // Where used.
    const EventIndex& index() const { return index_; }
    // Which Schedule an Event means.
    const ScheduleFinder& schedules() const { return schedules_; }

    // EventListObserver
    void eventChanged(const EventRecord& record, bool renamed) override;
    void shownEventLacksValue(const EventRecord& record) override;
    void eventGone(const EventRecord& record) override;
    void eventsCleared() override;

  private:
    struct Entry final : EventIndex::Entry, TwinEvents::Member {
        ProblemSet codes;
        bool isCountedDisabled = false;
        bool isNotStored = false;
    };

    // DirectoryObserver
    void deviceChanged(const Device& device) override;
    void groupChanged(const Group& group) override;
    void messageChanged(const AudioMessage& message) override;
    void directoryCleared() override;
    // ScheduleListObserver
    void scheduleChanged(const ScheduleRecord& record, std::string_view former) override;
    void scheduleGone(const ScheduleRecord& record) override;
    void schedulesCleared() override;
    // MailSettingsObserver
    void mailSettingsChanged() override;

    template <typename Work>
    void guarded(const Work& work) noexcept;
    void workOut();
    void forget();
    Entry& entryOf(const EventRecord& record);
    void updateTwins(Entry& entry);
    void judge(Entry& entry);
    void judgeUsers(UsedKind kind, std::string_view text);
    void judgeEveryEvent();
    void setCodes(Entry& entry, ProblemSet codes);
    void tell(const TwinEvents::Member* member);
    const ScheduleRecord* scheduleOf(const EventRecord& record) const;

    const EventList& events_;
    Directory& directory_;
    ScheduleList& scheduleList_;
    MailSettings& mail_;
    EventCheckerObserver* observer_ = nullptr;
    ScheduleFinder schedules_;
    EventIndex index_;
    TwinEvents twins_;
    std::unordered_map<const EventRecord*, Entry> entries_;  // of the Events that are shown, while isJudging_
    std::unordered_map<std::string, std::vector<std::string>> notStored_;  // by the Event's key
    std::size_t withProblems_ = 0;
    std::size_t disabled_ = 0;
    bool isReady_ = false;
    bool isJudging_ = false;  // ready, and nothing lacks memory
    bool isTelling_ = false;  // the observer hears of each Event
    bool hasMailServer_ = false;
};

}  // namespace orvc
