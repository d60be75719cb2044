// The console's life from logon to shutdown, without a window: what the timers and the server's events do.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "checker/event_checker.h"
#include "link/event_callback.h"
#include "link/event_queue.h"
#include "link/server_link.h"
#include "link/variable_store.h"
#include "model/directory.h"
#include "model/event_list.h"
#include "model/mail_settings.h"
#include "model/schedule_list.h"
#include "session/file_reader.h"
#include "session/gate.h"
#include "session/session_host.h"
#include "session/timers.h"
#include "support/clock.h"
#include "support/local_settings.h"
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
// doShutdown(). What fails for lack of memory throws out of the call and is done by a later tick or delivery; only an
// event that could not be handled for a whole second is lost, which is logged.
class Session {
  public:
    Session(SessionHost& host, ServerLink& link, WindowPoster& poster, TrackingLog& log, const Clock& clock,
            LocalSettings& settings, EventListObserver& eventObserver);

    // One tick of a main window's timer.
    void onTimer(std::uintptr_t timer);

    // Delivers what the library's thread put into the event queue, and goes on with what waited for it; true when no
    // event is left.
    bool deliverEvents();
    bool hasUndeliveredEvents() const { return eventQueue_.isPending(); }

    // Goes on with changes for a moment; true when there is more to write now.
    bool continueChanges();

    void doLogon();
    void doShutdown();
    // Ends the logon; the logon dialog comes up again, without logging on by itself.
    void logoff();

    // Carries changes out: see Gate::apply(). `done` may be empty.
    Gate::Ticket apply(std::vector<Change> changes, Gate::Done done = nullptr);
    Gate& gate() { return gate_; }

    EventCallback& callback() { return callback_; }
    // Logged on; in stand-alone mode: the link is open and the server has not stopped since.
    bool isConnected() const { return consoleMode_ ? loggedOn_ : link_.isOpen() && !stopped_; }
    // When the server stopped by itself, in seconds since 1970 UTC, until the next logon; nothing after a logoff.
    std::optional<std::int64_t> lostAt() const { return lostAt_; }
    // Why the last attempt to log on failed, as the library told it; nothing when none did or one succeeded since. A
    // user without administrator rights is one of them.
    std::optional<StartResult> logonFailure() const { return logonFailure_; }
    bool isShuttingDown() const { return bShuttingDown_; }
    // The server's configuration is there, or the time to wait for it is over.
    bool isReady() const { return settingsReady_; }
    bool isReloading() const { return reloadRunning_; }
    // The configuration is there and can be changed: not while it is received or reloaded.
    bool isEditable() const { return isConnected() && settingsReady_ && !reloadRunning_ && !bShuttingDown_; }
    // The library's open flags say whether there is a server to log on to.
    void setConsoleMode(bool consoleMode) { consoleMode_ = consoleMode; }

    EventList& events() { return events_; }
    const EventList& events() const { return events_; }
    ScheduleList& schedules() { return schedules_; }
    const Directory& directory() const { return directory_; }
    MailSettings& mailSettings() { return mailSettings_; }
    FileReader& fileReader() { return fileReader_; }
    // The problems of the Events. It judges from when the configuration is ready and all that had come by then has been
    // delivered: Events may come long after the settings.
    EventChecker& checker() { return checker_; }
    const EventChecker& checker() const { return checker_; }
    const VariableStore& store() const { return store_; }

  private:
    void receive(const QueuedEvent& event);
    void onVariable(const VariableEvent& event);
    void onConnection(const ConnectionEvent& event);
    void onServerStop();

    std::int32_t stopLink();
    void takeLogon(const LogonOutcome& outcome);
    void logStopped();
    void startSubscription();
    void continueSubscription();
    bool fetchMembers(const std::string& groupKey);
    void subscribe();
    void startCompletionWait();
    void doWaitSystemVariableComplete();
    void setReady(bool ready);
    void judgeWhenDelivered();
    Gate::Done notingWhatWasNotStored(const std::vector<Change>& changes, Gate::Done done);
    void releaseCurrentSettings();
    void askForSettingsAgain();
    void waitForReload();
    void endReload();
    bool areSettingsComplete() const { return mailSettings_.isComplete(clock_, graceDeadline_); }
    void clearServerLists();
    void clearMirror();

    // The members of the groups are fetched group by group before the subscription.
    struct MemberFetch {
        std::vector<std::string> groupKeys;  // still to be fetched, the last one first
        bool isAsked = false;                // for that one
        bool isAwaited = false;              // its members are to come
        std::int64_t deadline = 0;           // for them, in seconds since 1970 UTC
    };
    // The logon dialog's way to the library: a stop releases whoever waits for this thread.
    class ReleasingLogon final : public LogonLink {
      public:
        explicit ReleasingLogon(Session& session) : session_(session) {}
        StartResult start(const KSSocketAddress& address, const std::string& logonId,
                          const std::string& password) override;
        std::int32_t stop() override { return session_.stopLink(); }

      private:
        Session& session_;
    };

    SessionHost& host_;
    ServerLink& link_;
    TrackingLog& log_;
    const Clock& clock_;
    LocalSettings& settings_;

    Directory directory_;
    ScheduleList schedules_;
    MailSettings mailSettings_;
    EventChecker checker_;
    EventListObservers eventObservers_;
    EventList events_;
    VariableStore store_;
    FileReader fileReader_;
    EventQueue eventQueue_;
    EventCallback callback_;
    Gate gate_;
    ReleasingLogon logonLink_;

    ReentrancyCounter timerRuns_;
    ReentrancyCounter logonRuns_;
    ReentrancyCounter shutdownRuns_;
    bool consoleMode_ = false;
    bool linkReady_ = true;
    bool loggedOn_ = false;
    bool logonRequested_ = true;  // the next logon dialog may log on by itself
    bool logoffPending_ = false;  // the stop event that a logoff causes is still to come
    bool bShuttingDown_ = false;
    bool stopped_ = false;  // the server has stopped since the link was opened or came back
    bool storeComplete_ = false;
    bool settingsReady_ = false;
    bool reloadRunning_ = false;
    std::optional<MemberFetch> memberFetch_;
    std::int64_t graceDeadline_ = 0;  // seconds since 1970 UTC: logon plus 5
    std::int64_t waitDeadline_ = 0;   // subscription or reload plus 2
    std::optional<std::int64_t> lostAt_;
    std::optional<StartResult> logonFailure_;
    std::int64_t lastTimeoutLogged_ = -1;  // the second of the last timeout line
};

}  // namespace orvc
