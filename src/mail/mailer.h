// Sends an e-mail through a mail server.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "mail/email.h"

namespace orvc {

// How far a send has come, which is where it failed if it did.
enum class MailStage { kMessage, kConnect, kTls, kLogon, kSender, kRecipient, kData };

// "connect", "TLS" …, for the support log.
const char* nameOf(MailStage stage);

// Purpose: hands one e-mail at a time to a mail server.
//
// Port 465 speaks TLS from the first byte. On any other port TLS begins when the server offers it; from then on a
// server that refuses it, a handshake that fails and a certificate that is not trusted are a failed send: nothing of
// the logon or of the message is ever sent in clear then. Only where no TLS is offered everything goes in clear.
// Without a user name there is no logon.
//
// Thread: any, one at a time; cancel() may be called from another one. Lifetime: of the object with a send in it the
// caller takes care.
// Guarantees: send() returns after the time limit and a second at the latest; neither the password nor anything else
// that a logon sends is reported.
class Mailer {
  public:
    static constexpr int kTlsPort = 465;
    static constexpr std::chrono::milliseconds kTimeLimit{30'000};

    // Takes lines for the support log, without line end, while send() runs and on its thread.
    using Report = std::function<void(const std::string& line)>;

    explicit Mailer(Report report);
    Mailer(const Mailer&) = delete;
    Mailer& operator=(const Mailer&) = delete;

    // A name or an address; a literal IPv6 address may come without its brackets.
    void setHost(std::string host) { host_ = std::move(host); }
    void setUserName(std::string userName) { userName_ = std::move(userName); }
    void setPassword(std::string password) { password_ = std::move(password); }
    void setPort(int port) { port_ = port; }
    void setTimeLimit(std::chrono::milliseconds limit) { timeLimit_ = limit; }
    // A PEM file of the certificates to trust; by itself those of the machine are trusted.
    void setTrustedCertificates(std::string path) { trustedCertificates_ = std::move(path); }

    // Sends `email` to all its recipients and ends the connection. Returns false when any of them was refused or
    // anything else failed; nothing was delivered then, as far as the server tells.
    bool send(const Email& email);

    // Tells whether the server took leave of the last send's connection; false when that send failed.
    bool close();

    // Where the last send failed.
    MailStage failedStage() const { return failedStage_; }

    // Makes the send that runs, and every later one, fail within about a second.
    void cancel() { cancelled_.store(true, std::memory_order_relaxed); }

  private:
    friend class MailRun;

    Report report_;
    std::string host_;
    std::string userName_;
    std::string password_;
    int port_ = 25;
    std::chrono::milliseconds timeLimit_ = kTimeLimit;
    std::string trustedCertificates_;
    MailStage failedStage_ = MailStage::kMessage;
    bool closedCleanly_ = false;
    std::atomic<bool> cancelled_{false};
};

}  // namespace orvc
