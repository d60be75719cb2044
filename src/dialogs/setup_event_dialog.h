// The Event editor's window; what it holds, enables and checks is EventForm's knowledge.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "dialogs/configure_schedules_dialog.h"
#include "dialogs/please_wait_dialog.h"
#include "editors/event/event_form.h"
#include "lists/sort_key.h"
#include "model/event_record.h"
#include "session/change.h"
#include "session/payload_fetcher.h"
#include "ui/dialog.h"

namespace orvc {

// What the editor works with; all of it outlives the dialog. The records in it may come and go while the dialog is
// open.
struct EventEditorParts {
    const ui::Resources& resources;
    ServerReader& link;
    const Directory& directory;
    ScheduleList& schedules;
    FileReader& fileReader;
    TrackingLog& log;
    const Clock& clock;
    SortKeyMaker makeSortKey;
    std::function<bool()> isConnected;
    std::function<void(Change change)> apply;
    ScheduleCommands scheduleCommands;
};

// Purpose: creates an Event or changes a copy of one. Thread: user-interface thread.
class CSetupEventDlg final : public ui::Dialog {
  public:
    // `event`: the Event to modify, copied; null for a new one.
    CSetupEventDlg(const EventEditorParts& parts, const EventRecord* event);

    // Runs the editor. True when it was saved: the Event has that key.
    bool run(HWND owner);
    const std::string& key() const { return key_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    bool onTimer(std::uintptr_t timer) override;
    void onDestroy() override;

    bool onListChange(unsigned id);
    void select();
    void selectAudio();
    void selectTtsFile();
    void enterSpokenText();
    void enterEmail();
    void editSchedules();
    void save();

    void fillFixedLists();
    void showForm();
    void showLists();
    void showEnabling();
    void startFetch(PayloadKind fetch);
    void pollFetch(std::uintptr_t timer);
    void endFetch(PayloadKind kind);

    EventEditorParts parts_;
    std::optional<EventRecord> opened_;  // as it was loaded; none for a new Event
    std::string key_;
    EventForm form_;
    PayloadFetcher fetcher_;
    CPleaseWaitDlg pleaseWait_;
    bool showing_ = false;  // the controls are filled by us, not by the operator
    // What the lists show by now.
    unsigned shownSources_ = 0;
    unsigned shownResponses_ = 0;
    unsigned shownDestinations_ = 0;
    unsigned shownSchedules_ = 0;
};

}  // namespace orvc
