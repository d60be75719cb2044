#include "demo_server/core/server.h"

#include <algorithm>
#include <cstring>

#include "demo_server/core/event_choice.h"
#include "demo_server/core/installation_text.h"

namespace orvc::demo {
namespace {

// A change is saved this long after the last one, so that a record written value by value is saved once; but no later
// than that long after the first, however busily things change.
constexpr Millis kSaveDelay = 200;
constexpr Millis kLongestSaveDelay = 2000;
constexpr Millis kSaveRetryDelay = 1000;

bool isLoopback(const KSSocketAddress& address) {
    std::uint8_t firstByte = 0;
    std::memcpy(&firstByte, &address.address, 1);
    return address.family == 2 && firstByte == 127;
}

}  // namespace

Server::Server(Installation installation, Options options, std::vector<std::string> notices, Host& host)
    : installation_(std::move(installation)),
      options_(std::move(options)),
      notices_(std::move(notices)),
      host_(host),
      random_(static_cast<std::mt19937::result_type>(host.ticks() ^ host.utcSeconds())),
      faults_(options_.faultSeed.value_or(0)) {
    if (options_.standalone) beginSession();
}

Server::~Server() {
    close();
}

// ---- Logon ----

std::int32_t Server::start(const KSSocketAddress& address, std::string_view logonId, std::string_view password,
                           bool& isAdmin) {
    if (loggedOn_) return logon_result::kAlreadyLoggedIn;
    if (options_.faultSeed) drawFaults();
    if (refusalsGiven_ < options_.refusals.size()) return options_.refusals[refusalsGiven_++];
    if (!isLoopback(address)) return logon_result::kServerNotFound;
    const auto user = std::find_if(installation_.users.begin(), installation_.users.end(), [&](const User& known) {
        return known.name == logonId && known.password == password;
    });
    if (user == installation_.users.end()) return logon_result::kInvalid;
    if (!host_.claimUser(user->name)) return logon_result::kAlreadyLoggedIn;
    isAdmin = user->isAdmin && options_.admin;
    queue(makeTextRun(event_code::kUserConnected, user->name));
    beginSession();
    return logon_result::kSuccess;
}

void Server::beginSession() {
    loggedOn_ = true;
    ++logons_;
    queue(makeServerTimeRun(host_.utcSeconds()));
    for (const std::string& notice : notices_)
        queue(makeTextRun(event_code::kText, notice));
    for (const std::string& complaint : options_.complaints)
        queue(makeTextRun(event_code::kText, complaint));
    sendDirectory();
    queue(makeSignalRun(event_code::kInitializationComplete));
    makeAppointments();
}

void Server::sendDirectory() {
    queue(makeDevicesRun());
    queue(makeGroupsRun());
    queue(makeQueuesRun());
}

// What the other options can be asked for one by one. A logon is refused at times, and usually stopped soon.
void Server::drawFaults() {
    const auto oneIn = [this](std::uint32_t chances) { return faults_() % chances == 0; };
    const auto upTo = [this](std::uint32_t most) { return Millis{faults_() % (most + 1)}; };
    if (oneIn(16)) options_.refusals.push_back(oneIn(2) ? logon_result::kTimedOut : logon_result::kServerNotFound);
    options_.stopAfter = oneIn(16) ? std::nullopt : std::optional(upTo(200));
    options_.reloadAfter = oneIn(2) ? std::optional(upTo(100)) : std::nullopt;
    options_.resendValues = oneIn(2);
    options_.shuffleSeed = oneIn(4) ? std::optional<std::uint32_t>(faults_()) : std::nullopt;
    options_.slow = oneIn(32) ? 1 : 0;
    options_.lateMembers = oneIn(4) ? upTo(100) : 0;
    options_.lateStop = oneIn(16) ? upTo(1200) : 0;
    options_.incomplete = oneIn(4);
    options_.muteFiles = oneIn(8);
}

void Server::makeAppointments() {
    const Millis now = host_.ticks();
    const auto add = [&](const std::optional<Millis>& delay, Action action) {
        if (delay) appointments_.push_back({now + *delay, action, 0});
    };
    add(options_.stopAfter, Action::kStop);
    if (logons_ == 1) add(options_.stopOnce, Action::kStop);
    add(options_.reloadAfter, Action::kAnnounceReload);
    if (options_.fireInterval > 0) add(options_.fireInterval, Action::kFireEvent);
}

void Server::endLogon() {
    if (!loggedOn_) return;
    loggedOn_ = false;
    generation_.fetch_add(1, std::memory_order_release);
    outbox_.clear();
    appointments_.clear();
    subscribedPath_.reset();
    host_.releaseUser();
}

std::int32_t Server::stop() {
    if (!loggedOn_) return kDone;
    endLogon();
    if (options_.lateStop > 0)
        appointments_.push_back({host_.ticks() + options_.lateStop, Action::kTellStop, 0});
    else
        queue(makeSignalRun(event_code::kServerStop));
    return kDone;
}

void Server::close() {
    endLogon();
    appointments_.clear();
    outbox_.clear();
}

// ---- Directory ----

// Groups that a console makes serve only the time in which it asks for members; nothing needs to be kept of them.
std::int32_t Server::createGroup(const KSGroupRecord&) {
    return loggedOn_ ? kDone : kRefused;
}

std::int32_t Server::deleteGroup(std::uint32_t) {
    return loggedOn_ ? kDone : kRefused;
}

std::int32_t Server::sendGroupMembers(std::uint32_t groupId) {
    if (!loggedOn_ || !installation_.findGroup(groupId)) return kRefused;
    if (options_.lateMembers > 0) {
        appointments_.push_back({host_.ticks() + options_.lateMembers, Action::kSendMembers, groupId});
    } else {
        queue(makeMembersRun(groupId));
    }
    return kDone;
}

std::int32_t Server::sendMessages() {
    if (!loggedOn_) return kRefused;
    queue(makeMessagesRun());
    return kDone;
}

std::int32_t Server::resendSettings() {
    if (!loggedOn_) return kRefused;
    sendDirectory();
    if (options_.resendValues) {
        queue(makeVariablesRun(subscribedPath_.value_or("\\ORVS\\"), subscriptionManner()));
    } else {
        queue(makeSignalRun(event_code::kInitializationComplete));
    }
    return kDone;
}

// ---- Variables ----

bool Server::isSubscribed(std::string_view name) const {
    return subscribedPath_ && name.starts_with(*subscribedPath_);
}

SubscriptionManner Server::subscriptionManner() const {
    return {options_.slow, options_.shuffleSeed, options_.incomplete};
}

std::int32_t Server::subscribe(std::string_view path) {
    if (!loggedOn_) return kRefused;
    subscribedPath_ = VariableTree::asKeyPath(path);
    queue(makeVariablesRun(*subscribedPath_, subscriptionManner()));
    return kDone;
}

std::int32_t Server::createKey(std::string_view path, bool create) {
    if (!loggedOn_ || path.empty()) return kRefused;
    const std::string keyPath = VariableTree::asKeyPath(path);
    if (create) {
        if (!installation_.variables.hasKey(keyPath)) markChanged();
        installation_.variables.createKey(keyPath);
        if (isSubscribed(keyPath)) {
            queue(makeKeyRun(std::string(VariableTree::keyName(keyPath)), variable_type::kKey));
        }
        return kDone;
    }
    if (path.back() != '\\') return kRefused;
    std::vector<VariableTree::Removed> removed = installation_.variables.removeKey(keyPath);
    if (removed.empty()) return kRefused;
    markChanged();
    if (isSubscribed(keyPath)) queue(makeRemovedRun(std::move(removed)));
    return kDone;
}

std::int32_t Server::setString(std::string_view name, std::uint32_t type, std::string_view text) {
    if (!loggedOn_) return kRefused;
    installation_.variables.setString(name, text);
    markChanged();
    if (isSubscribed(name)) queue(makeStringRun(std::string(name), type, std::string(text)));
    return kDone;
}

std::int32_t Server::setDword(std::string_view name, std::uint32_t type, std::uint32_t number) {
    if (!loggedOn_) return kRefused;
    installation_.variables.setDword(name, number);
    markChanged();
    if (isSubscribed(name)) queue(makeDwordRun(std::string(name), type, number));
    return kDone;
}

void Server::fireSomeEvent() {
    const auto path = chooseEventToFire(installation_.variables, random_);
    if (!path) return;
    const std::uint32_t now = host_.utcSeconds();
    setDword(*path + "lastChecked", variable_type::kDword, now);
    setDword(*path + "lastTriggered", variable_type::kDword, now);
}

// ---- Files ----

std::int32_t Server::createFile(KSGuid& created) {
    if (!loggedOn_) return kRefused;
    do
        created = randomGuid();
    while (installation_.files.contains(created));
    installation_.storeFile(created, {});
    markChanged();
    return kDone;
}

std::int32_t Server::readFile(const KSGuid& file) {
    const auto found = installation_.files.find(file);
    if (!loggedOn_ || found == installation_.files.end()) return kRefused;
    if (!options_.muteFiles) queue(makeFileRun(file, found->second));
    return kDone;
}

std::int32_t Server::writeFile(const KSGuid& file, std::string bytes) {
    if (!loggedOn_ || !installation_.files.contains(file)) return kRefused;
    installation_.storeFile(file, std::move(bytes));
    markChanged();
    return kDone;
}

std::int32_t Server::deleteFile(const KSGuid& file) {
    if (!loggedOn_ || installation_.files.erase(file) == 0) return kRefused;
    markChanged();
    return kDone;
}

// ---- What the event thread asks ----

void Server::keep(const Appointment& appointment) {
    switch (appointment.action) {
        case Action::kStop:
            stop();
            break;
        case Action::kTellStop:
            queue(makeSignalRun(event_code::kServerStop));
            break;
        case Action::kAnnounceReload:
            queue(makeSignalRun(event_code::kSettingsUpdate));
            break;
        case Action::kFireEvent:
            fireSomeEvent();
            appointments_.push_back({host_.ticks() + options_.fireInterval, Action::kFireEvent, 0});
            break;
        case Action::kSendMembers:
            queue(makeMembersRun(appointment.groupId));
            break;
    }
}

void Server::keepDueAppointments() {
    const Millis now = host_.ticks();
    const auto earlier = [](const Appointment& a, const Appointment& b) { return a.due < b.due; };
    for (;;) {
        const auto next = std::min_element(appointments_.begin(), appointments_.end(), earlier);
        if (next == appointments_.end() || next->due > now) return;
        const Appointment appointment = *next;
        appointments_.erase(next);
        keep(appointment);  // may make or cancel others
    }
}

void Server::takeBatch(Batch& batch) {
    keepDueAppointments();
    batch.clear();
    batch.generation = generation();
    const Millis now = host_.ticks();
    while (!outbox_.empty() && !batch.full() && outbox_.front()->due() <= now) {
        if (outbox_.front()->fill(batch, installation_, now)) outbox_.pop_front();
    }
}

std::optional<Millis> Server::nextWork() const {
    std::optional<Millis> next;
    const auto consider = [&next](Millis due) { next = next ? std::min(*next, due) : due; };
    if (!outbox_.empty()) consider(outbox_.front()->due());
    for (const Appointment& appointment : appointments_)
        consider(appointment.due);
    if (firstChange_) consider(saveDue_);
    return next;
}

void Server::markChanged() {
    if (options_.generated) return;  // lives in memory only
    const Millis now = host_.ticks();
    if (!firstChange_) firstChange_ = now;
    saveDue_ = std::min(now + kSaveDelay, *firstChange_ + kLongestSaveDelay);
}

std::optional<std::string> Server::takeDueSave() {
    return firstChange_ && saveDue_ <= host_.ticks() ? takeSave() : std::nullopt;
}

std::optional<std::string> Server::takeSave() {
    if (!firstChange_) return std::nullopt;
    firstChange_.reset();
    return formatInstallation(installation_);
}

void Server::saveFailed() {
    firstChange_ = host_.ticks();
    saveDue_ = *firstChange_ + kSaveRetryDelay;
}

}  // namespace orvc::demo
