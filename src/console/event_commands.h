// What the commands do to the selected Events.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console/console_parts.h"
#include "console/event_list_view.h"
#include "dialogs/configure_schedules_dialog.h"
#include "session/bulk_changes.h"
#include "session/event_copier.h"
#include "session/session.h"
#include "ui/status_bar.h"

namespace orvc {

// Purpose: creates, changes and deletes Events, one or many; everything goes through the session's gate. What becomes
// of many is told by `tell`, as one sentence. Thread: user-interface thread. Lifetime: what the constructor takes
// outlives it.
class EventCommands {
  public:
    EventCommands(const ConsoleParts& parts, Session& session, EventTable& table, EventListView& list,
                  std::function<void(const std::string&)> tell);

    void attach(HWND window) { window_ = window; }
    // What the dialogs say of a lost link. Set before one opens.
    void setLinkNote(LinkNote linkNote) { linkNote_ = std::move(linkNote); }

    void create() { runEditor(nullptr); }
    void modify();
    // Asks first.
    void erase();
    void duplicate();
    void setDisabled(bool disabled);
    // The dialog of the Schedules, and what it asks for.
    void editSchedules();
    ScheduleCommands scheduleCommands();
    // Asks for the Schedule.
    void assignSchedule();
    // The shown columns of the selected rows go to the clipboard, one Event a line, between tabs.
    void copy();

    // Carries out a change of whatever kind; only that it was not stored is told.
    void store(Change change);

    // One tick of the copy's timer.
    void onTimer();
    // Ids of the texts that say why a command cannot be given now; 0 when it can.
    unsigned whyNotEditable() const;
    unsigned whyNotSelected();

    // How far the last command on many is; nothing once all is written.
    std::optional<ui::StatusBar::Progress> progress() const;
    // Ends it between two Events.
    void cancel();

  private:
    void runEditor(const EventRecord* event);
    void applyToMany(std::vector<Change> changes, unsigned done);
    void eraseOne(const EventRecord& event);
    void eraseMany(const EventRecords& events);
    EventRecords findAgain(const std::vector<std::string>& keys);
    void deleteSchedule(const ScheduleRecord& record, const std::string& otherKey);
    bool isNameTaken(const std::string& name) const;
    void select(const std::string& key);

    ConsoleParts parts_;
    Session& session_;
    EventTable& table_;
    EventListView& list_;
    std::function<void(const std::string&)> tell_;
    LinkNote linkNote_;
    EventCopier copier_;
    HWND window_ = nullptr;
    std::optional<Gate::Ticket> ticket_;  // of the last command on many
};

}  // namespace orvc
