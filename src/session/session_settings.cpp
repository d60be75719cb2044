// How the configuration comes from the server: the subscription after a logon, and the reload.
#include <algorithm>
#include <exception>
#include <utility>

#include "model/variable_path.h"
#include "session/session.h"

namespace orvc {
namespace {

constexpr std::int64_t kCompletionWait = 2;  // seconds after a subscription or a reload
constexpr std::uint32_t kReloadPause = 200;
constexpr std::int64_t kMemberPatience = 30;  // seconds for the members of one group

}  // namespace

void Session::startSubscription() {
    host_.stopTimer(timer::kSubscriptionStart);
    // Without a logon this is how a server says that it is back.
    if (!consoleMode_ && link_.isOpen()) stopped_ = false;
    if (!isConnected()) return;
    try {
        if (!consoleMode_) schedules_.makeDefault();
        MemberFetch fetch;
        for (const Group& group : directory_.groups())
            if (group.record.expectedMembers != 0) fetch.groupKeys.emplace_back(group.key());
        std::ranges::reverse(fetch.groupKeys);
        memberFetch_ = std::move(fetch);
        host_.startTimer(timer::kMemberWait, timer::kMemberWaitPeriod);
        host_.startTimer(timer::kOverdue, timer::kOverduePeriod);
        continueSubscription();
    } catch (const std::exception&) {
        host_.startTimer(timer::kSubscriptionStart, timer::kSubscriptionStartPeriod);
        throw;
    }
}

// Goes on as far as the members that have come allow. Called whenever events were delivered, and by a timer for those
// that do not come.
void Session::continueSubscription() {
    if (!memberFetch_) return;
    while (!memberFetch_->groupKeys.empty()) {
        if (!fetchMembers(memberFetch_->groupKeys.back())) return;
        memberFetch_->groupKeys.pop_back();
        memberFetch_->isAsked = false;
    }
    subscribe();
    memberFetch_.reset();
    host_.stopTimer(timer::kMemberWait);
}

// Returns whether that group is done.
bool Session::fetchMembers(const std::string& groupKey) {
    // It may have been sent again meanwhile, or be gone.
    Group* const group = directory_.findGroup(groupKey);
    if (group == nullptr) return true;
    const std::size_t held = group->members.size();
    const std::uint32_t expected = group->record.expectedMembers;
    if (!memberFetch_->isAsked) {
        memberFetch_->isAsked = true;
        memberFetch_->deadline = clock_.now() + kMemberPatience;
        link_.createGroup(group->record);
        if (held != expected) {
            memberFetch_->isAwaited = true;
            link_.getGroupMembers(group->record.groupId);
            return false;
        }
    }
    if (memberFetch_->isAwaited) {
        const bool isOverdue = clock_.now() > memberFetch_->deadline;
        if (held < expected && !isOverdue) return false;
        memberFetch_->isAwaited = false;
        if (held < expected)
            log_.log("getListIcoms: Group '%s' has %u of its %u members, waiting no longer", groupKey.c_str(),
                     static_cast<unsigned>(held), static_cast<unsigned>(expected));
        else
            log_.log("getListIcoms: Done with group");
    }
    directory_.resolvePlaceholders(*group);
    link_.deleteGroup(group->record.groupId);
    return true;
}

void Session::subscribe() {
    const std::string root(kRootPath);
    link_.getMessages();
    link_.createRoot(root);
    link_.subscribe(root);
    startCompletionWait();
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
    setReady(true);
    host_.stopTimer(timer::kCompletionWait);
    host_.refreshEventList();
}

void Session::releaseCurrentSettings() {
    if (!isConnected()) {
        host_.stopTimer(timer::kReload);
        return;
    }
    if (reloadRunning_ || memberFetch_) return;  // the timer asks again
    reloadRunning_ = true;
    host_.stopTimer(timer::kReload);
    // The please-wait window must close again, whatever happens.
    try {
        host_.openPleaseWait();
        askForSettingsAgain();
    } catch (const std::exception&) {
        setReady(true);
        host_.startTimer(timer::kReloadWait, timer::kReloadWaitPeriod);
        host_.startTimer(timer::kReload, timer::kReloadPeriod);
        throw;
    }
    host_.startTimer(timer::kReloadWait, timer::kReloadWaitPeriod);
}

void Session::askForSettingsAgain() {
    setReady(false);
    host_.refreshEventList();
    host_.pause(kReloadPause);
    if (!isConnected()) return;  // the server has stopped during the pause
    // What came until now is not the answer.
    storeComplete_ = false;
    mailSettings_.awaitAgain();
    log_.log("releaseCurrentSettings: Deleting Server Group Information");
    directory_.clear();
    link_.getMessages();
    link_.resendSettings();
    startCompletionWait();
}

void Session::waitForReload() {
    if (isConnected() && !bShuttingDown_ && !settingsReady_) return;
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
    mailSettings_.clear();
    storeComplete_ = false;
    setReady(false);
}

}  // namespace orvc
