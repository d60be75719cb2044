#include "mail/mail_task.h"

#include <exception>
#include <utility>

namespace orvc {

MailTask::MailTask(const MailServer& server, Email email, Mailer::Report report, std::function<void()> finished)
    : mailer_(std::move(report)), email_(std::move(email)), finished_(std::move(finished)) {
    mailer_.setHost(server.host);
    mailer_.setUserName(server.userName);
    mailer_.setPassword(server.password);
    mailer_.setPort(server.port);
    thread_ = std::thread([this] { run(); });
}

MailTask::~MailTask() {
    abandoned_.store(true, std::memory_order_relaxed);
    mailer_.cancel();
    thread_.join();
}

void MailTask::run() {
    Outcome outcome = Outcome::kFailed;
    try {
        if (mailer_.send(email_)) outcome = mailer_.close() ? Outcome::kSent : Outcome::kSentNotClosed;
    } catch (const std::exception&) {
        // Out of memory, so nothing was sent.
    }
    outcome_.store(outcome, std::memory_order_release);
    if (!abandoned_.load(std::memory_order_relaxed)) finished_();
}

}  // namespace orvc
