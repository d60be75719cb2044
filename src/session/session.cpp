#include "session/session.h"

#include <cstdlib>
#include <exception>
#include <utility>

namespace orvc {
namespace {

constexpr std::int64_t kSettingsGrace = 5;  // seconds after the logon
constexpr std::uint32_t kLogoffPause = 1000;

constexpr EventTimers kEventTimers{timer::kSubscriptionStart, timer::kSubscriptionStartPeriod, timer::kReload,
                                   timer::kReloadPeriod};

// The tracking file goes to support: it never holds a password.
const char* loggableText(const VariableEvent& event) {
    const char* const text = event.text() != nullptr ? event.text() : "";
    return *text != '\0' && MailSettings::isPassword(event.nameView()) ? "***" : text;
}

// Values by the last component of their names, as the Events' fields are named.
std::vector<std::string> lastComponents(const std::vector<std::string>& names) {
    std::vector<std::string> components;
    components.reserve(names.size());
    for (const std::string& name : names)
        components.push_back(name.substr(name.rfind('\\') + 1));
    return components;
}

}  // namespace

Session::Session(SessionHost& host, ServerLink& link, WindowPoster& poster, TrackingLog& log, const Clock& clock,
                 LocalSettings& settings, EventListObserver& eventObserver)
    : host_(host),
      link_(link),
      log_(log),
      clock_(clock),
      settings_(settings),
      directory_(log),
      schedules_(log, clock),
      checker_(events_, directory_, schedules_, mailSettings_),
      // A row that is shown anew asks the checker, which must have heard of the change by then.
      eventObservers_({&checker_, &eventObserver}),
      events_(eventObservers_, log, clock),
      store_(log),
      eventQueue_(poster, [this](const std::unique_ptr<QueuedEvent>& event) { receive(*event); }),
      callback_(eventQueue_, log, clock, kEventTimers),
      gate_(link, {events_, schedules_, mailSettings_, directory_}, log, clock),
      logonLink_(*this) {
    store_.setKeyFilter([this](std::string_view path) { return gate_.isForeignDeletion(path); });
    store_.addOwner(events_);
    store_.addOwner(schedules_);
    store_.addOwner(mailSettings_);
    store_.setAfterRouting([this] {
        if (!storeComplete_ && areSettingsComplete()) storeComplete_ = true;
    });
}

bool Session::deliverEvents() {
    const bool done = eventQueue_.drain();
    if (const std::size_t lost = eventQueue_.takeLostCount())
        log_.log("deliverEvents: %u events lost: no memory", static_cast<unsigned>(lost));
    if (memberFetch_) continueSubscription();
    judgeWhenDelivered();
    return done;
}

void Session::setReady(bool ready) {
    settingsReady_ = ready;
    if (ready)
        judgeWhenDelivered();
    else
        checker_.setReady(false);
}

void Session::judgeWhenDelivered() {
    if (settingsReady_ && !eventQueue_.isPending()) checker_.setReady(true);
    checker_.recover();
}

Gate::Ticket Session::apply(std::vector<Change> changes, Gate::Done done) {
    host_.startTimer(timer::kGate, timer::kGatePeriod);
    Gate::Done noting = notingWhatWasNotStored(changes, std::move(done));
    return gate_.apply(std::move(changes), std::move(noting));
}

// An Event that was saved again is free of what was not stored before.
Gate::Done Session::notingWhatWasNotStored(const std::vector<Change>& changes, Gate::Done done) {
    std::vector<std::string> savedEvents;  // keys; empty for any other change
    savedEvents.reserve(changes.size());
    for (const Change& change : changes) {
        const auto* const event = std::get_if<EventChange>(&change);
        savedEvents.push_back(event != nullptr && event->after ? event->after->key : std::string());
    }
    return [this, keys = std::move(savedEvents), then = std::move(done)](const std::vector<ChangeResult>& results) {
        for (std::size_t i = 0; i < keys.size(); ++i)
            if (!keys[i].empty() && results[i].outcome != Outcome::kCancelled)
                checker_.setNotStored(keys[i], lastComponents(results[i].notStored));
        if (then) then(results);
    };
}

bool Session::continueChanges() {
    return gate_.isBusy() && gate_.step();
}

void Session::onTimer(std::uintptr_t timerId) {
    const ReentrancyCounter::Scope run(timerRuns_);
    if (!run.isOutermost()) return;
    judgeWhenDelivered();
    switch (timerId) {
        case timer::kLogon:
            doLogon();
            break;
        case timer::kSubscriptionStart:
            startSubscription();
            break;
        case timer::kReload:
            releaseCurrentSettings();
            break;
        case timer::kReloadWait:
            waitForReload();
            break;
        case timer::kCompletionWait:
            doWaitSystemVariableComplete();
            break;
        case timer::kMemberWait:
            continueSubscription();
            break;
        case timer::kGate:
            gate_.step();
            if (!gate_.isBusy()) host_.stopTimer(timer::kGate);
            break;
        case timer::kOverdue:
            events_.showOverdue();
            break;
        default:
            break;  // timer 2 ticks and does nothing
    }
}

void Session::doLogon() {
    const ReentrancyCounter::Scope run(logonRuns_);
    if (bShuttingDown_) {
        log_.log("doLogon: calling doShutdown() because bShuttingDown set");
        doShutdown();
        host_.endMainWindow();
        return;
    }
    if (!run.isOutermost() || !linkReady_ || loggedOn_ || !consoleMode_ || !link_.isOpen()) return;
    LogonEntry entry;
    entry.logonId = settings_.userName;
    entry.password = settings_.userPassword;
    entry.address = settings_.ipAddress;
    entry.port = std::to_string(settings_.ipPort);
    entry.saveCredentials = !settings_.userName.empty();
    entry.mayLogOnAtOnce = logonRequested_;
    logonRequested_ = false;
    try {
        const LogonOutcome outcome = host_.runLogonDialog(entry, logonLink_);
        loggedOn_ = outcome.success;
        if (outcome.cancelled)
            bShuttingDown_ = true;
        else if (outcome.success)
            takeLogon(outcome);
        else
            logonRequested_ = entry.mayLogOnAtOnce;  // the dialog went away: it comes again
    } catch (const std::exception&) {
        // The server must not hold a logon of which only half is known here.
        stopLink();
        throw;
    }
}

void Session::takeLogon(const LogonOutcome& outcome) {
    const LogonEntry& entry = outcome.entry;
    logoffPending_ = false;
    lostAt_.reset();
    graceDeadline_ = clock_.now() + kSettingsGrace;
    settings_.ipAddress = entry.address;
    settings_.ipPort = static_cast<std::int32_t>(std::strtol(entry.port.c_str(), nullptr, 10));
    settings_.adapterName = host_.findAdapterName(entry.address);
    log_.setUser(entry.logonId);
    log_.OpenCloseDebugFile(false, false);
    log_.log("*** ORVE Events Configuration Console Login ***");
    host_.showTitle(entry.logonId);
    schedules_.makeDefault();
    host_.refreshEventList();
    settings_.userName = entry.saveCredentials ? entry.logonId : std::string();
    settings_.userPassword = entry.saveCredentials ? entry.password : std::string();
    host_.saveSettings();
}

StartResult Session::ReleasingLogon::start(const KSSocketAddress& address, const std::string& logonId,
                                           const std::string& password) {
    const StartResult result = session_.link_.start(address, logonId, password);
    session_.logonFailure_.reset();
    if (result.code != logon_result::kSuccess || !result.isAdministrator) session_.logonFailure_ = result;
    return result;
}

// Avoid a deadlock: the library's thread may be waiting for this one.
std::int32_t Session::stopLink() {
    const EventQueue::NoWaiting release(eventQueue_);
    return link_.stop();
}

void Session::logoff() {
    if (!link_.isOpen()) return;
    logonFailure_.reset();
    // Until the stop event that this causes has been handled no timer may bring up the logon dialog.
    const ReentrancyCounter::Scope noTimers(timerRuns_);
    logoffPending_ = loggedOn_;
    lostAt_.reset();
    stopLink();
    host_.pause(kLogoffPause);
    logonRequested_ = false;
}

void Session::doShutdown() {
    const ReentrancyCounter::Scope run(shutdownRuns_);
    if (run.isOutermost()) {
        logStopped();
        host_.stopTimer(timer::kUnused);
        host_.stopTimer(timer::kLogon);
        host_.stopTimer(timer::kIdle);
        if (link_.isOpen()) {
            // Every change was sent when it was made: there is no last update to write.
            bShuttingDown_ = true;
            loggedOn_ = false;
            memberFetch_.reset();
            gate_.linkLost();
            // Avoid a deadlock: the library's thread may be waiting for this one.
            eventQueue_.close();
            log_.log("doShutdown: KSStop()");
            link_.stop();
            log_.log("doShutdown: KSClose()");
            link_.close();
            log_.log("doShutdown: FreeLibrary()");
            link_.unload();
            eventQueue_.discard();
            clearServerLists();
            clearMirror();
            fileReader_.clear();
            host_.removeKeyboardHook();
        }
        log_.log("doShutdown: Done");
        log_.OpenCloseDebugFile(true, false);
    }
    host_.removeTrayIcon();
}

void Session::logStopped() {
    try {
        log_.log("ORVC Version %s Stopped", host_.programVersion().c_str());
    } catch (const std::exception&) {
        log_.log("ORVC Stopped");  // no memory; the shutdown needs none
    }
}

void Session::receive(const QueuedEvent& event) {
    switch (event.message()) {
        case private_message::kNewIntercom:
            onConnection(static_cast<const ConnectionEvent&>(event));
            break;
        case private_message::kServerStop:
            onServerStop();
            break;
        case private_message::kGroupInformation:
            directory_.updateGroup(static_cast<const GroupEvent&>(event).record);
            break;
        case private_message::kGroupMember:
            directory_.doNewGroupMember(static_cast<std::uint32_t>(event.wParam()),
                                        static_cast<const MemberEvent&>(event).record);
            break;
        case private_message::kVariable:
            onVariable(static_cast<const VariableEvent&>(event));
            break;
        case private_message::kFileData:
            fileReader_.append(static_cast<const FileDataEvent&>(event).file,
                               static_cast<const FileDataEvent&>(event).bytes);
            break;
        case private_message::kNewQueueMembership:
            directory_.addQueueMembership(static_cast<const CallQueueEvent&>(event).record);
            break;
        case private_message::kQueueMembershipUpdate:
            directory_.updateQueueMembership(static_cast<const CallQueueEvent&>(event).record);
            break;
        case private_message::kServerGroup:
            directory_.addServerGroup(static_cast<const ServerGroupEvent&>(event).record);
            break;
        case private_message::kGroupMessage:
            directory_.doNewGroupMessageInfo(static_cast<const AudioMessageEvent&>(event).record);
            break;
        case private_message::kStartTimer:
            host_.startTimer(event.wParam(), static_cast<const TimerEvent&>(event).period);
            break;
        default:
            break;
    }
}

void Session::onConnection(const ConnectionEvent& event) {
    try {
        directory_.updateDevice(event.info, event.extra, event.socket());
    } catch (const std::exception&) {
        log_.log("OnCallDoNewIntercom: Caught from doNewIntercom");
        throw;  // it is delivered again
    }
}

void Session::onVariable(const VariableEvent& event) {
    if (log_.isTakingLines()) {
        const std::uint32_t kind = event.type() & variable_type::kKindMask;
        if ((event.type() & variable_type::kValue) == 0)
            log_.log("Received subscription variable information for %s (key 0x%08x)", event.name(), event.type());
        else if (kind == variable_type::kStringKind)
            log_.log("Received subscription variable information for %s (string variable '%s' 0x%08x)", event.name(),
                     loggableText(event), event.type());
        else if (kind == variable_type::kDwordKind)
            log_.log("Received subscription variable information for %s (dword variable %d 0x%08x)", event.name(),
                     static_cast<int>(event.number()), event.type());
    }
    const Variable variable{event.nameView(), event.type(), event.textView(), event.number()};
    gate_.observe(variable);
    store_.doSystemVariableUpdate(variable);
}

void Session::onServerStop() {
    if (bShuttingDown_)
        log_.writeToDebugger("Event:Stop. Console Shutdown disconnected from server\n");
    else
        log_.log("Event:Stop. Console disconnected from server");
    // However this ends, the logon dialog may come up afterwards.
    struct Pause {
        bool& ready;
        ~Pause() { ready = true; }
    };
    linkReady_ = false;
    const Pause pause{linkReady_};
    if (loggedOn_ && !logoffPending_) lostAt_ = clock_.now();
    loggedOn_ = false;
    stopped_ = true;
    memberFetch_.reset();
    gate_.linkLost();
    // A logoff's own stop may come long after the logoff: the logon that follows waits for the operator all the same.
    logonRequested_ = !std::exchange(logoffPending_, false);
    log_.setUser({});
    if (!bShuttingDown_) {
        // What is still due belongs to the logon that has ended: the next one has deadlines of its own.
        for (const std::uintptr_t due : {timer::kSubscriptionStart, timer::kReload, timer::kCompletionWait,
                                         timer::kMemberWait, timer::kGate, timer::kOverdue})
            host_.stopTimer(due);
        // While the logon dialog is open no timer looks after a reload.
        if (reloadRunning_) endReload();
        clearServerLists();
        clearMirror();
        host_.showTitle({});
        host_.refreshEventList();
    }
}

}  // namespace orvc
