#include "session/logon_sequence.h"

#include <cstdlib>

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

constexpr int kRetrySeconds = 10;

std::uint16_t toNetworkOrder(std::uint16_t number) {
    const std::uint8_t bytes[2] = {static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
    std::uint16_t ordered = 0;
    std::memcpy(&ordered, bytes, sizeof ordered);
    return ordered;
}

bool mayRetry(std::int32_t code) {
    return code == logon_result::kTimedOut || code == logon_result::kServerNotFound;
}

}  // namespace

std::uint16_t parsePort(const std::string& text) {
    return static_cast<std::uint16_t>(std::strtoul(text.c_str(), nullptr, 10));
}

LogonSequence::LogonSequence(LogonView& view, LogonLink& link, const StringTable& strings, TrackingLog& log,
                             AddressReader readAddress)
    : view_(view), link_(link), strings_(strings), log_(log), readAddress_(std::move(readAddress)) {}

void LogonSequence::begin(const LogonEntry& entry) {
    if (entry.mayLogOnAtOnce && entry.saveCredentials && !entry.logonId.empty() && !entry.password.empty()) attempt();
}

void LogonSequence::attempt() {
    if (attempting_) return;
    attempting_ = true;
    view_.stopTimers();
    view_.enableControls(false);
    view_.setTitle(strings_.text(IDS_LOGGING_IN));
    view_.handleWaitingMessages();
    const LogonEntry entry = view_.readEntry();
    KSSocketAddress address;
    address.port = toNetworkOrder(parsePort(entry.port));
    address.address = readAddress_(entry.address);
    const StartResult result = link_.start(address, entry.logonId, entry.password);
    attempting_ = false;
    if (result.code == logon_result::kSuccess)
        onSuccess(result.isAdministrator);
    else
        onFailure(result.code, entry);
}

void LogonSequence::onSuccess(bool isAdministrator) {
    retry_ = false;
    if (isAdministrator) {
        view_.end(true);
        return;
    }
    view_.showError(strings_.text(IDS_LOGON_NO_ADMIN));
    link_.stop();
    becomeIdle();
    view_.selectPassword();
}

void LogonSequence::onFailure(std::int32_t code, const LogonEntry& entry) {
    const bool isFirst = attempts_++ == 0;
    retry_ = isFirst || mayRetry(code);
    const std::string text = isFirst ? std::string() : describe(code, entry);
    if (!retry_) {
        becomeIdle();
        view_.showError(text);
        return;
    }
    // A retry shows no box: the support log has the reason.
    if (!text.empty()) log_.log("doLogon: %s", text.c_str());
    view_.setTitle(strings_.text(IDS_LOGON_WAITING));
    countdown_ = kRetrySeconds;
    view_.startCountdownTimer();
}

std::string LogonSequence::describe(std::int32_t code, const LogonEntry& entry) const {
    switch (code) {
        case logon_result::kAlreadyLoggedIn:
            return strings_.text(IDS_LOGON_IN_USE);
        case logon_result::kInvalid:
            return strings_.text(IDS_LOGON_INVALID);
        case logon_result::kIncompatibleVersion:
            return strings_.text(IDS_LOGON_INCOMPATIBLE);
        case logon_result::kInvalidOrAlreadyLoggedIn:
            return strings_.text(IDS_LOGON_INVALID_OR_IN_USE);
        case logon_result::kTimedOut:
            return strings_.text(IDS_LOGON_TIMED_OUT);
        case logon_result::kServerNotFound:
            return fillIn(strings_.text(IDS_LOGON_NOT_FOUND), {long{code}, entry.address, long{parsePort(entry.port)}});
        default:
            return fillIn(strings_.text(IDS_LOGON_OTHER_ERROR), {long{code}});
    }
}

void LogonSequence::onTick() {
    if (!retry_ || attempting_) return;
    --countdown_;
    view_.setTitle(fillIn(strings_.text(IDS_LOGON_COUNTDOWN), {long{countdown_}}));
    if (countdown_ > 0) return;
    view_.stopTimers();
    attempt();
}

void LogonSequence::cancel() {
    if (attempting_) return;
    if (!retry_) {
        if (view_.mayCancel()) view_.end(false);
        return;
    }
    retry_ = false;
    view_.stopTimers();
    becomeIdle();
}

void LogonSequence::becomeIdle() {
    view_.enableControls(true);
    view_.setTitle(strings_.text(IDS_LOGON_REQUIRED));
}

}  // namespace orvc
