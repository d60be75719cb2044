// Sends an e-mail through a mail server.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "mail/email.h"

namespace orvc {

// How far a send has come. If it fails: where. Before kConnect, nothing was sent and the text that the stage names is
// not valid; at kStart, libcurl or memory failed. The results in the string table have this order too.
enum class MailStage { kStart, kSubject, kFrom, kTo, kHost, kConnect, kTls, kLogon, kSender, kRecipient, kData };

// The stage's name in the tracking file: "connect", "TLS" …
const char* nameOf(MailStage stage);

// Why a send failed.
struct MailFailure {
    MailStage stage = MailStage::kStart;
    // From kConnect on: the server's refusal, or what libcurl says if there was none. One line without the password.
    std::string detail{};
    bool timedOut = false;
};

// Purpose: sends one e-mail at a time through a mail server.
//
// On port 465, TLS starts with the first byte. On any other port, it starts if the server offers it. From then on, the
// send fails if the server refuses TLS, the handshake fails or the certificate is not trusted; neither the logon nor
// the message is sent unencrypted. If the server offers no TLS, everything is sent unencrypted. On Windows, a revoked
// certificate is not trusted, but one whose revocation list cannot be reached is.
//
// Of the kinds of logon that the server offers, libcurl chooses the first of DIGEST-MD5, CRAM-MD5, NTLM, PLAIN and
// LOGIN that the machine has. The first three do not send the password. Without a user name there is no logon.
//
// Thread: any, one at a time; any other thread may call cancel(). Lifetime: the caller keeps the object alive while
// send() runs.
// Guarantees: send() returns at most a second after the time limit. Neither the password nor anything else that a logon
// sends is reported.
class Mailer {
  public:
    static constexpr int kTlsPort = 465;
    static constexpr std::chrono::milliseconds kTimeLimit{30'000};

    // Gets lines for the tracking file, without line end, while send() runs and on its thread.
    using Report = std::function<void(const std::string& line)>;

    explicit Mailer(Report report);
    Mailer(const Mailer&) = delete;
    Mailer& operator=(const Mailer&) = delete;

    // A name or an address; an IPv6 address needs no brackets.
    void setHost(std::string host) { host_ = std::move(host); }
    void setUserName(std::string userName) { userName_ = std::move(userName); }
    void setPassword(std::string password) { password_ = std::move(password); }
    void setPort(int port) { port_ = port; }
    void setTimeLimit(std::chrono::milliseconds limit) { timeLimit_ = limit; }
    // A PEM file of the certificates to trust, instead of those that the machine trusts.
    void setTrustedCertificates(std::string path) { trustedCertificates_ = std::move(path); }

    // Sends `email` to all its recipients and closes the connection. Returns false if the server refused one of them or
    // anything else failed; then the server has accepted nothing, as far as it said.
    bool send(const Email& email);

    // Returns whether the server confirmed the end of the last send's connection; false if that send failed.
    bool close();

    // Why the last send failed.
    const MailFailure& failure() const { return failure_; }

    // Makes the running send, and every later one, fail within about a second.
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
    MailFailure failure_;
    bool closedCleanly_ = false;
    std::atomic<bool> cancelled_{false};
};

}  // namespace orvc
