#include "mail_server/tls_server.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace orvc {
namespace {

class TlsChannel final : public Channel {
  public:
    explicit TlsChannel(SSL* ssl) : ssl_(ssl) {}
    ~TlsChannel() override {
        SSL_shutdown(ssl_);
        SSL_free(ssl_);
    }
    int read(char* buffer, int size) override { return SSL_read(ssl_, buffer, size); }
    int write(const char* bytes, int size) override { return SSL_write(ssl_, bytes, size); }

  private:
    SSL* ssl_;
};

void sign(X509* certificate, EVP_PKEY* key, const std::string& host) {
    X509_set_version(certificate, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -60);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 3600);
    X509_set_pubkey(certificate, key);
    X509_NAME* name = X509_get_subject_name(certificate);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>(host.c_str()), -1, -1,
                               0);
    X509_set_issuer_name(certificate, name);
    const std::string names = "DNS:" + host;
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, names.c_str());
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
    X509_sign(certificate, key, EVP_sha256());
}

}  // namespace

struct TlsIdentity::Context {
    SSL_CTX* ssl = SSL_CTX_new(TLS_server_method());
    ~Context() { SSL_CTX_free(ssl); }
};

TlsIdentity::TlsIdentity(const std::string& host) : context_(std::make_unique<Context>()) {
    EVP_PKEY* key = EVP_EC_gen("P-256");
    X509* certificate = X509_new();
    sign(certificate, key, host);
    SSL_CTX_use_certificate(context_->ssl, certificate);
    SSL_CTX_use_PrivateKey(context_->ssl, key);
    char path[] = "/tmp/orvc_certificate_XXXXXX";
    if (std::FILE* file = fdopen(mkstemp(path), "w")) {
        PEM_write_X509(file, certificate);
        std::fclose(file);
        certificateFile_ = path;
    }
    X509_free(certificate);
    EVP_PKEY_free(key);
}

TlsIdentity::~TlsIdentity() {
    std::remove(certificateFile_.c_str());
}

StartTls TlsIdentity::startTls() const {
    return [context = context_->ssl](SocketHandle socket) -> std::unique_ptr<Channel> {
        const timeval patience{10, 0};
        setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        SSL* ssl = SSL_new(context);
        SSL_set_fd(ssl, static_cast<int>(socket));
        if (SSL_accept(ssl) == 1) return std::make_unique<TlsChannel>(ssl);
        SSL_free(ssl);
        return nullptr;
    };
}

}  // namespace orvc
