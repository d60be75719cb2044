#include "app/session.h"

#include <cstdlib>
#include <exception>
#include <utility>
#include <vector>

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::int64_t kSettingsGrace = 5;   // seconds after the logon
constexpr std::int64_t kCompletionWait = 2;  // seconds after a subscription or a reload
constexpr std::uint32_t kLogoffPause = 1000;
constexpr std::uint32_t kReloadPause = 200;
constexpr std::uint32_t kMemberPause = 100;

constexpr EventTimers kEventTimers{timer::kSubscriptionStart, timer::kSubscriptionStartPeriod, timer::kReload,
                                   timer::kReloadPeriod};

}  // namespace

Session::Session(SessionHost& host, ServerLink& link, WindowPoster& poster, TrackingLog& log, const Clock& clock,
                 Settings& settings, SortKeyMaker makeSortKey)
    : host_(host),
      link_(link),
      log_(log),
      clock_(clock),
      settings_(settings),
      directory_(log),
      events_(link, directory_, log, clock, std::move(makeSortKey)),
      schedules_(link, log, clock),
      store_(log),
      handOver_(poster, [this](const std::unique_ptr<EventBlock>& block) { receive(*block); }),
      callback_(handOver_, log, clock, kEventTimers) {
    store_.addOwner(events_);
    store_.addOwner(schedules_);
    store_.addOwner(serverSettings_);
    store_.setAfterRouting([this] {
        if (!storeComplete_ && areSettingsComplete()) storeComplete_ = true;
    });
}

bool Session::deliverEvents() {
    const bool done = handOver_.drain();
    if (const std::size_t lost = handOver_.takeLostCount())
        log_.log("%u events lost: no memory", static_cast<unsigned>(lost));
    return done;
}

void Session::onTimer(std::uintptr_t timerId) {
    const ReentrancyCounter::Scope run(timerRuns_);
    if (!run.isOutermost()) return;
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
    if (!run.isOutermost() || !linkReady_ || loggedOn_ || !consoleMode_) return;
    LogonEntry entry;
    entry.logonId = settings_.userName;
    entry.password = settings_.userPassword;
    entry.address = settings_.ipAddress;
    entry.port = std::to_string(settings_.ipPort);
    entry.saveCredentials = !settings_.userName.empty();
    entry.mayLogOnAtOnce = logonRequested_;
    logonRequested_ = false;
    try {
        const LogonOutcome outcome = host_.runLogonDialog(entry);
        loggedOn_ = outcome.success;
        if (outcome.cancelled)
            bShuttingDown_ = true;
        else if (outcome.success)
            takeLogon(outcome);
        else
            logonRequested_ = entry.mayLogOnAtOnce;  // the dialog went away: it comes again
    } catch (const std::exception&) {
        // The server shall hold no logon of which only half is known here.
        link_.stop();
        throw;
    }
}

void Session::takeLogon(const LogonOutcome& outcome) {
    const LogonEntry& entry = outcome.entry;
    logoffPending_ = false;
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
}

void Session::logoff() {
    if (!link_.isOpen()) return;
    if (!loggedOn_) {
        logonRequested_ = false;  // nothing to end, nothing to wait for
        return;
    }
    // Until the stop event that this causes has been handled no timer may bring up the logon dialog.
    const ReentrancyCounter::Scope noTimers(timerRuns_);
    logoffPending_ = true;
    link_.stop();
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
            // The library's thread may wait for this one, which is about to wait for it.
            handOver_.close();
            log_.log("doShutdown: KSStop()");
            link_.stop();
            log_.log("doShutdown: KSClose()");
            link_.close();
            log_.log("doShutdown: FreeLibrary()");
            link_.unload();
            handOver_.discard();
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

EventRecord& Session::saveEvent(const EventRecord& saved) {
    EventRecord& record = events_.store(saved);
    events_.write(record);
    return record;
}

void Session::deleteEvent(EventRecord& record) {
    events_.deletePayloadFile(record);
    events_.remove(record);
}

void Session::receive(const EventBlock& block) {
    switch (block.message()) {
        case private_message::kNewIntercom:
            onConnection(static_cast<const ConnectionBlock&>(block));
            break;
        case private_message::kServerStop:
            onServerStop();
            break;
        case private_message::kGroupInformation:
            directory_.updateGroup(static_cast<const GroupBlock&>(block).record);
            break;
        case private_message::kGroupMember:
            directory_.doNewGroupMember(static_cast<std::uint32_t>(block.wParam()),
                                        static_cast<const MemberBlock&>(block).record);
            break;
        case private_message::kVariable:
            onVariable(static_cast<const VariableBlock&>(block));
            break;
        case private_message::kFileData:
            fileReader_.append(static_cast<const FileDataBlock&>(block).file,
                               static_cast<const FileDataBlock&>(block).bytes);
            break;
        case private_message::kNewQueueMembership:
            directory_.addQueueMembership(static_cast<const QueueBlock&>(block).record);
            break;
        case private_message::kQueueMembershipUpdate:
            directory_.updateQueueMembership(static_cast<const QueueBlock&>(block).record);
            break;
        case private_message::kServerGroup:
            directory_.addServerGroup(static_cast<const ServerGroupBlock&>(block).record);
            break;
        case private_message::kGroupMessage:
            directory_.doNewGroupMessageInfo(static_cast<const MessageBlock&>(block).record);
            break;
        case private_message::kStartTimer:
            host_.startTimer(block.wParam(), static_cast<const TimerBlock&>(block).period);
            break;
        default:
            break;
    }
}

void Session::onConnection(const ConnectionBlock& block) {
    try {
        directory_.updateDevice(block.info, block.extra, block.socket());
    } catch (const std::exception&) {
        log_.log("OnCallDoNewIntercom: Caught from doNewIntercom");
        throw;  // it is delivered again
    }
}

void Session::onVariable(const VariableBlock& block) {
    if (log_.isTakingLines()) {
        const std::uint32_t kind = block.type() & variable_type::kKindMask;
        if ((block.type() & variable_type::kValue) == 0)
            log_.log("Received subscription variable information for %s (key 0x%08x)", block.name(), block.type());
        else if (kind == variable_type::kStringKind)
            log_.log("Received subscription variable information for %s (string variable '%s' 0x%08x)", block.name(),
                     block.text() != nullptr ? block.text() : "", block.type());
        else if (kind == variable_type::kDwordKind)
            log_.log("Received subscription variable information for %s (dword variable %d 0x%08x)", block.name(),
                     static_cast<int>(block.number()), block.type());
    }
    store_.doSystemVariableUpdate({block.nameView(), block.type(), block.textView(), block.number()});
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
    loggedOn_ = false;
    // A logoff's own stop may come long after the logoff: the logon that follows waits for the operator all the same.
    logonRequested_ = !std::exchange(logoffPending_, false);
    log_.setUser({});
    if (!bShuttingDown_) {
        // What is still due belongs to the logon that has ended: the next one has deadlines of its own.
        for (const std::uintptr_t due : {timer::kSubscriptionStart, timer::kReload, timer::kCompletionWait})
            host_.stopTimer(due);
        // While the logon dialog is open no timer looks after a reload.
        if (reloadRunning_) endReload();
        clearServerLists();
        clearMirror();
        host_.showTitle({});
        host_.refreshEventList();
    }
}

void Session::startSubscription() {
    host_.stopTimer(timer::kSubscriptionStart);
    if (!loggedOn_) return;
    try {
        subscribe();
    } catch (const std::exception&) {
        host_.startTimer(timer::kSubscriptionStart, timer::kSubscriptionStartPeriod);
        throw;
    }
}

void Session::subscribe() {
    std::vector<std::string> keys;
    for (const Group& group : directory_.groups())
        if (group.record.expectedMembers != 0) keys.emplace_back(group.key());
    for (const std::string& key : keys)
        if (!fetchGroupMembers(key)) return;
    link_.getMessages();
    link_.createKey(std::string(kRootPath), true);
    link_.subscribe(std::string(kRootPath));
    startCompletionWait();
}

// Returns false when the wait for the members ended because the logon did: nothing may be called then.
bool Session::fetchGroupMembers(const std::string& groupKey) {
    const Group* group = directory_.findGroup(groupKey);
    if (group == nullptr) return true;
    link_.createGroup(group->record);
    if (group->members.size() != group->record.expectedMembers && !getListIcoms(groupKey)) return false;
    // The wait ran the message loop: the group may have been told again, or be gone.
    if (Group* found = directory_.findGroup(groupKey)) {
        directory_.resolvePlaceholders(*found);
        link_.deleteGroup(found->record.groupId);
    }
    return true;
}

bool Session::getListIcoms(const std::string& groupKey) {
    const Group* group = directory_.findGroup(groupKey);
    link_.getGroupMembers(group->record.groupId);
    while (group != nullptr && group->members.size() < group->record.expectedMembers) {
        host_.handleMessagesAndSleep(kMemberPause);
        if (bShuttingDown_ || !loggedOn_) return false;
        group = directory_.findGroup(groupKey);
    }
    log_.log("getListIcoms: Done with group");
    return true;
}

void Session::startCompletionWait() {
    waitDeadline_ = clock_.now() + kCompletionWait;
    host_.startTimer(timer::kCompletionWait, timer::kCompletionWaitPeriod);
}

void Session::doWaitSystemVariableComplete() {
    const std::int64_t now = clock_.now();
    if (!storeComplete_ && now <= waitDeadline_) return;
    if (!storeComplete_ && !areSettingsComplete() && lastTimeoutLogged_ != now) {
        lastTimeoutLogged_ = now;
        log_.log("doWaitSystemVariableComplete: Timeout waiting for system variables to complete");
    }
    settingsReady_ = true;
    host_.stopTimer(timer::kCompletionWait);
}

void Session::releaseCurrentSettings() {
    if (!loggedOn_) {
        host_.stopTimer(timer::kReload);
        return;
    }
    if (reloadRunning_) return;  // the timer asks again
    callback_.takeSettingsUpdate();
    reloadRunning_ = true;
    host_.stopTimer(timer::kReload);
    // The please-wait window must close again, whatever happens.
    try {
        host_.openPleaseWait();
        askForSettingsAgain();
    } catch (const std::exception&) {
        settingsReady_ = true;
        host_.startTimer(timer::kReloadWait, timer::kReloadWaitPeriod);
        host_.startTimer(timer::kReload, timer::kReloadPeriod);
        throw;
    }
    host_.startTimer(timer::kReloadWait, timer::kReloadWaitPeriod);
}

void Session::askForSettingsAgain() {
    settingsReady_ = false;
    storeComplete_ = false;
    host_.pause(kReloadPause);
    if (!loggedOn_) return;  // the server has stopped during the pause
    log_.log("releaseCurrentSettings: Deleting Server Group Information");
    directory_.clear();
    link_.getMessages();
    link_.resendSettings();
    startCompletionWait();
}

void Session::waitForReload() {
    if (loggedOn_ && !bShuttingDown_ && !settingsReady_) return;
    endReload();
}

void Session::endReload() {
    reloadRunning_ = false;
    host_.stopTimer(timer::kReloadWait);
    host_.closePleaseWait();
}

void Session::clearServerLists() {
    events_.clear();
    directory_.clear();
    schedules_.clear();
}

void Session::clearMirror() {
    store_.clear();
    serverSettings_.clear();
    storeComplete_ = false;
    settingsReady_ = false;
}

}  // namespace orvc
