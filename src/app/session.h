// The console's life from logon to shutdown, without a window: what the timers and the server's events do.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "app/file_reader.h"
#include "app/session_host.h"
#include "link/event_callback.h"
#include "link/hand_over.h"
#include "link/server_link.h"
#include "link/variable_store.h"
#include "model/directory.h"
#include "model/event_list.h"
#include "model/schedule_list.h"
#include "model/server_settings.h"
#include "support/clock.h"
#include "support/settings.h"
#include "support/tracking_log.h"

namespace orvc {

// Counts the runs of a routine that a modal dialog or a wait may start again inside itself.
class ReentrancyCounter {
  public:
    class Scope {
      public:
        explicit Scope(ReentrancyCounter& counter) : counter_(counter) { ++counter_.count_; }
        ~Scope() { --counter_.count_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        bool isOutermost() const { return counter_.count_ == 1; }

      private:
        ReentrancyCounter& counter_;
    };

  private:
    int count_ = 0;
};

// Purpose: logs on and off, keeps the mirror of the server's settings, reloads it, shuts down in the fixed order.
// Thread: everything belongs to the user-interface thread, but for callback(), which is called on the library's.
// Lifetime: what the constructor takes outlives the session.
// Guarantees: a timer that fires while another timer's work runs does nothing; nothing is called in the library after
// doShutdown(). What fails for want of memory throws out of the call and is done by a later tick or delivery; only an
// event that could not be handled for a whole second is lost, which is logged.
class Session {
  public:
    Session(SessionHost& host, ServerLink& link, WindowPoster& poster, TrackingLog& log, const Clock& clock,
            Settings& settings, SortKeyMaker makeSortKey);

    // One tick of a main window's timer.
    void onTimer(std::uintptr_t timer);

    // Delivers what the library's thread put into the hand-over; true when nothing is left.
    bool deliverEvents();
    bool hasUndeliveredEvents() const { return handOver_.isPending(); }

    void doLogon();
    void doShutdown();
    // Ends the logon; the logon dialog comes up again, without logging on by itself.
    void logoff();

    // Takes over an Event that the editor saved and writes its variables. Returns the record in the list.
    EventRecord& saveEvent(const EventRecord& saved);
    // Deletes an Event, its payload file first, here and on the server.
    void deleteEvent(EventRecord& record);

    EventCallback& callback() { return callback_; }
    bool isLoggedOn() const { return loggedOn_; }
    bool isShuttingDown() const { return bShuttingDown_; }
    // The server's configuration is there, or the time to wait for it is over.
    bool isReady() const { return settingsReady_; }
    bool isReloading() const { return reloadRunning_; }
    // The library's open flags say whether there is a server to log on to.
    void setConsoleMode(bool consoleMode) { consoleMode_ = consoleMode; }

    EventList& events() { return events_; }
    ScheduleList& schedules() { return schedules_; }
    const Directory& directory() const { return directory_; }
    ServerSettings& serverSettings() { return serverSettings_; }
    FileReader& fileReader() { return fileReader_; }
    const VariableStore& store() const { return store_; }

  private:
    void receive(const EventBlock& block);
    void onVariable(const VariableBlock& block);
    void onConnection(const ConnectionBlock& block);
    void onServerStop();

    void takeLogon(const LogonOutcome& outcome);
    void logStopped();
    void startSubscription();
    void subscribe();
    bool fetchGroupMembers(const std::string& groupKey);
    bool getListIcoms(const std::string& groupKey);
    void startCompletionWait();
    void doWaitSystemVariableComplete();
    void releaseCurrentSettings();
    void askForSettingsAgain();
    void waitForReload();
    void endReload();
    bool areSettingsComplete() const { return serverSettings_.isComplete(clock_, graceDeadline_); }
    void clearServerLists();
    void clearMirror();

    SessionHost& host_;
    ServerLink& link_;
    TrackingLog& log_;
    const Clock& clock_;
    Settings& settings_;

    Directory directory_;
    EventList events_;
    ScheduleList schedules_;
    ServerSettings serverSettings_;
    VariableStore store_;
    FileReader fileReader_;
    HandOver handOver_;
    EventCallback callback_;

    ReentrancyCounter timerRuns_;
    ReentrancyCounter logonRuns_;
    ReentrancyCounter shutdownRuns_;
    bool consoleMode_ = false;
    bool linkReady_ = true;
    bool loggedOn_ = false;
    bool logonRequested_ = true;  // the next logon dialog may log on by itself
    bool logoffPending_ = false;  // the stop event that a logoff causes is still to come
    bool bShuttingDown_ = false;
    bool storeComplete_ = false;
    bool settingsReady_ = false;
    bool reloadRunning_ = false;
    std::int64_t graceDeadline_ = 0;       // seconds since 1970 UTC: logon plus 5
    std::int64_t waitDeadline_ = 0;        // subscription or reload plus 2
    std::int64_t lastTimeoutLogged_ = -1;  // the second of the last timeout line
};

}  // namespace orvc
