// The Event editor's window; what it holds, enables and checks is EventForm's knowledge.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/configure_schedules_dialog.h"
#include "dialogs/link_note.h"
#include "dialogs/please_wait_dialog.h"
#include "editors/event/event_form.h"
#include "editors/event/place_search.h"
#include "lists/sort_key.h"
#include "model/event_record.h"
#include "session/change.h"
#include "session/payload_fetcher.h"
#include "ui/dialog.h"
#include "ui/drop_down_keys.h"
#include "ui/foot_line.h"

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
    TextFolder foldText;
    std::function<bool()> isConnected;
    std::function<void(Change change)> apply;
    ScheduleCommands scheduleCommands;
    LinkNote linkNote;
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
    bool holdsEntries() const override { return true; }
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
    void attachKeys();
    void attachSearch(unsigned id, PlaceSearch& search, ui::DropDownKeys& keys);
    std::vector<SearchText> searchedSources() const;
    void showForm();
    void showLists();
    void showEnabling();
    void showFoot();
    void startFetch(PayloadKind fetch);
    void pollFetch(std::uintptr_t timer);
    void endFetch(PayloadKind kind);

    EventEditorParts parts_;
    std::optional<EventRecord> opened_;  // as it was loaded; none for a new Event
    std::string key_;
    EventForm form_;
    PayloadFetcher fetcher_;
    CPleaseWaitDlg pleaseWait_;
    // The source and the destination are found by what is typed.
    PlaceSearch sourceSearch_;
    PlaceSearch destinationSearch_;
    std::array<ui::DropDownKeys, 8> keys_;
    ui::FootLine foot_;
    bool showing_ = false;  // the controls are filled by us, not by the operator
    // What the lists show by now.
    unsigned shownSources_ = 0;
    unsigned shownResponses_ = 0;
    unsigned shownDestinations_ = 0;
    unsigned shownSchedules_ = 0;
};

}  // namespace orvc
