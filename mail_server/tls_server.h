// The server's side of TLS for tests: a key and a certificate of its own, made anew each time.
#pragma once

#include <memory>
#include <string>

#include "mail_server/smtp_server.h"

namespace orvc {

// Purpose: lets an SmtpServer encrypt. Lifetime: outlives the servers that use it.
class TlsIdentity {
  public:
    // The certificate is valid for `host` (a DNS name) and for nothing else, and signed by itself.
    explicit TlsIdentity(const std::string& host);
    ~TlsIdentity();
    TlsIdentity(const TlsIdentity&) = delete;
    TlsIdentity& operator=(const TlsIdentity&) = delete;

    StartTls startTls() const;
    // The certificate as a PEM file, there as long as this object.
    const std::string& certificateFile() const { return certificateFile_; }

  private:
    struct Context;
    std::unique_ptr<Context> context_;
    std::string certificateFile_;
};

}  // namespace orvc
