// The Event editor without its window: what its lists hold, what it enables, checks and shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "editors/event/fixed_choices.h"
#include "editors/event/place_choices.h"
#include "model/directory.h"
#include "model/event_record.h"
#include "model/schedule_list.h"
#include "session/payload_fetcher.h"
#include "support/string_table.h"

namespace orvc {

// What the source list holds.
enum class SourceKind { kNone, kPlaces, kServer, kTimesOfDay };

// An entry of the schedule list. The placeholder has an empty key.
struct ScheduleChoice {
    std::string key;
    std::string name;
};

// Which controls can be used. The name, the Schedules button, the Disabled box and Cancel always can.
struct EventFormEnabling {
    bool trigger = false;
    bool source = false;
    bool timeout = false;
    bool timeoutValueAndUnit = false;
    bool schedule = false;
    bool response = false;
    bool destination = false;
    bool select = false;
    bool save = false;

    friend bool operator==(const EventFormEnabling&, const EventFormEnabling&) = default;
};

// A box to show while an Event is loaded: ids of its text and caption.
struct LoadMessage {
    unsigned text;
    unsigned caption;

    friend bool operator==(const LoadMessage&, const LoadMessage&) = default;
};

struct LoadResult {
    std::vector<LoadMessage> messages;       // in the order in which they are shown
    PayloadKind fetch = PayloadKind::kNone;  // the payload file to fetch after loading
};

// Purpose: one Event being entered. The chain runs name, trigger, source, timing, schedule, response, destination or
// payload; a step can be used once the one before it is complete.
// Thread: user-interface thread. Lifetime: what the constructor takes outlives the form. The form holds copies of all
// that it shows: nothing dangles when the server stops or sends its settings again while the editor is open.
// Indices are positions in the lists; 0 is each list's placeholder.
class EventForm {
  public:
    EventForm(const StringTable& strings, const Directory& directory, const ScheduleList& schedules);

    // Takes an Event's values over. Call once, on a new form.
    LoadResult load(const EventRecord& record);

    // What the operator does.
    void setName(std::string name) { name_ = std::move(name); }
    void chooseTrigger(int index);
    void chooseSource(int index) { source_ = index; }
    void chooseTimeout(int index);
    void chooseTimeoutValue(int index) { timeoutValue_ = index; }
    void chooseTimeoutUnit(int index) { timeoutUnit_ = index; }
    void chooseSchedule(int index) { schedule_ = index; }
    void chooseResponse(int index);
    void chooseDestination(int index);
    void setDisabled(bool disabled) { disabled_ = disabled; }
    // What a sub-editor or a fetch brought.
    void setMessageKey(std::string key);
    void setTtsFilename(std::string filename);
    void setSpokenText(std::string text);
    void setEmail(EventEmail email);
    // A fetch has ended: keeps the payload that arrived. The response line shows it, whatever it holds, or says that
    // none arrived, unless another response was chosen meanwhile.
    void takeFetched(FetchedPayload fetched);
    // A sub-editor has closed, whether or not it was saved.
    void rewriteResponseLine();
    // The set of Schedules may have changed: lists it again and keeps the choice if it is still there.
    void refreshSchedules();

    EventFormEnabling enabling() const;

    // Lists as they are shown, and the chosen positions.
    SourceKind sourceKind() const { return sourceKind_; }
    const std::vector<Place>& sources() const { return sources_; }  // devices and groups, or the placeholder alone
    std::vector<std::string> otherSources() const;                  // the server, or times of day
    const std::vector<ScheduleChoice>& schedules() const { return scheduleChoices_; }
    std::vector<std::string> responseTexts() const;
    const std::vector<Place>& destinations() const { return destinations_; }
    // Grow when a list is filled again.
    unsigned sourceRevision() const { return sourceRevision_; }
    unsigned responseRevision() const { return responseRevision_; }
    unsigned destinationRevision() const { return destinationRevision_; }
    unsigned scheduleRevision() const { return scheduleRevision_; }

    const std::string& name() const { return name_; }
    int triggerIndex() const { return static_cast<int>(trigger_); }
    int sourceIndex() const { return source_; }
    int timeoutIndex() const { return static_cast<int>(timeout_); }
    // Beyond its list for a loaded timeout that the list cannot show.
    std::int64_t timeoutValue() const { return timeoutValue_; }
    std::int64_t timeoutUnit() const { return timeoutUnit_; }
    int scheduleIndex() const { return schedule_; }
    int responseIndex() const;
    int destinationIndex() const { return destination_; }
    bool isDisabled() const { return disabled_; }
    const std::string& responseLine() const { return responseLine_; }

    Trigger trigger() const { return trigger_; }
    Response response() const { return response_; }
    const std::string& messageKey() const { return messageKey_; }
    const std::string& ttsFilename() const { return ttsFilename_; }
    const std::string& spokenText() const { return spokenText_; }
    const EventEmail& email() const { return email_; }

    // Takes the form's values into `record` in place of the old ones; the payload file is the caller's to write. What
    // the form does not show stays: the key, the server's times, the error mark.
    void fill(EventRecord& record) const;

  private:
    void fitSourcesToTrigger();
    void fillSources(SourceKind kind);
    void fillSchedules();
    void fillDestinations(bool asSources = false);
    void resetDelayUnlessUsed();
    void loadTiming(const EventRecord& record);
    void loadSource(const EventRecord& record, LoadResult& result);
    void loadSchedule(const EventRecord& record, LoadResult& result);
    void loadResponse(const EventRecord& record, LoadResult& result);
    bool isSourceChosen() const;
    bool isTimingComplete() const;
    bool isPayloadComplete() const;
    std::string describe(Response response) const;
    std::string describeAudio() const;
    std::string describeSpokenText() const;
    std::string describeEmail() const;
    const Place* chosenPlace(const std::vector<Place>& places, int index) const;

    const StringTable& strings_;
    const Directory& directory_;
    const ScheduleList& scheduleList_;

    std::string name_;
    Trigger trigger_ = Trigger::kNone;
    SourceKind sourceKind_ = SourceKind::kNone;
    std::vector<Place> sources_;
    int source_ = 0;
    Timeout timeout_ = Timeout::kNone;
    std::int64_t timeoutValue_ = 0;
    std::int64_t timeoutUnit_ = 0;  // 0 = seconds, anything else = minutes
    std::vector<ScheduleChoice> scheduleChoices_;
    int schedule_ = 0;
    Response response_ = Response::kNone;
    std::vector<Place> destinations_;
    bool destinationsFilled_ = false;
    int destination_ = 0;
    bool disabled_ = false;
    std::string responseLine_;

    std::string messageKey_;
    std::string ttsFilename_;
    std::string spokenText_;
    EventEmail email_;

    unsigned sourceRevision_ = 1;
    unsigned responseRevision_ = 1;
    unsigned destinationRevision_ = 1;
    unsigned scheduleRevision_ = 1;
};

// A long text as a label shows it: leading control bytes skipped, cut at the first other one and after 61 bytes, with
// "..." behind what was cut. A byte from 0x80 on counts as a control byte. `emptyText` stands for nothing left.
std::string shortenForDisplay(const std::string& text, const std::string& emptyText);

}  // namespace orvc
