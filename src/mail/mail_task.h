// One send on a thread of its own.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "mail/mailer.h"

namespace orvc {

// Where to send, as the operator typed it. Texts are UTF-8.
struct MailServer {
    std::string host{};
    std::string userName{};
    std::string password{};
    int port = 25;
};

// Purpose: sends one e-mail in the background.
//
// Thread: one thread makes, asks and destroys it; the callbacks run on another. Lifetime: the destructor cancels the
// send and waits until it ends, about a second at most; what the callbacks use must live until then.
class MailTask {
  public:
    enum class Outcome { kRunning, kFailed, kSent, kSentNotClosed };

    // Starts at once. Calls `finished` when outcome() is known, unless the task is being destroyed. Throws
    // std::system_error if the system has no thread for it.
    MailTask(const MailServer& server, Email email, Mailer::Report report, std::function<void()> finished);
    ~MailTask();
    MailTask(const MailTask&) = delete;
    MailTask& operator=(const MailTask&) = delete;

    Outcome outcome() const { return outcome_.load(std::memory_order_acquire); }
    // Of an outcome kFailed.
    const MailFailure& failure() const { return mailer_.failure(); }
    void cancel() { mailer_.cancel(); }

  private:
    void run();

    Mailer mailer_;
    Email email_;
    std::function<void()> finished_;
    std::atomic<Outcome> outcome_{Outcome::kRunning};
    std::atomic<bool> abandoned_{false};
    std::thread thread_;
};

}  // namespace orvc
