#include "mail/mailer.h"

#include <curl/curl.h>
#ifdef _WIN32
#include <windows.h>

#include <wincrypt.h>
#endif

#include <algorithm>
#include <array>
#include <ctime>
#include <memory>
#include <random>
#include <string_view>

#include "support/text.h"

namespace orvc {
namespace {

using TimePoint = std::chrono::steady_clock::time_point;

constexpr std::chrono::seconds kLeaveLimit{5};
constexpr std::size_t kLongestAnswer = 200;
constexpr std::size_t kShortestSecret = 3;

template <auto Free>
struct CurlDeleter {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};
using CurlHandle = std::unique_ptr<CURL, CurlDeleter<curl_easy_cleanup>>;
using CurlAddress = std::unique_ptr<CURLU, CurlDeleter<curl_url_cleanup>>;
using CurlText = std::unique_ptr<char, CurlDeleter<curl_free>>;
using CurlList = std::unique_ptr<curl_slist, CurlDeleter<curl_slist_free_all>>;

bool startLibrary() {
    static const bool started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return started;
}

std::string makeUnique() {
    std::random_device random;
    return formatText("%08x%08x", random(), random());
}

// The server's address as libcurl wants it; empty if the host or the port is not valid.
std::string formatAddress(const std::string& host, int port) {
    if (port < 1 || port > 65'535) return {};
    std::string name(trimBlanks(host));
    if (name.find(':') != std::string::npos && !name.starts_with('[')) {
        name.insert(name.begin(), '[');
        name += ']';
    }
    const CurlAddress address(curl_url());
    const auto set = [&](CURLUPart part, const std::string& text) {
        return !text.empty() && curl_url_set(address.get(), part, text.c_str(), 0) == CURLUE_OK;
    };
    char* text = nullptr;
    if (!set(CURLUPART_SCHEME, port == Mailer::kTlsPort ? "smtps" : "smtp") || !set(CURLUPART_HOST, name) ||
        !set(CURLUPART_PORT, std::to_string(port)) || curl_url_get(address.get(), CURLUPART_URL, &text, 0) != CURLUE_OK)
        return {};
    return CurlText(text).get();
}

#ifdef _WIN32
// Wine's TLS does not check certificates. Under Wine: the certificates that the machine trusts, in PEM, so that libcurl
// checks against them. On Windows: empty, because Windows checks and knows more certificates than its store holds.
std::string trustedWhereUnchecked() {
    std::string trusted;
    if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) return trusted;
    const HCERTSTORE store = CertOpenSystemStoreA(0, "ROOT");
    const CERT_CONTEXT* found = nullptr;
    while (store != nullptr && (found = CertEnumCertificatesInStore(store, found)) != nullptr) {
        DWORD size = 0;
        CryptBinaryToStringA(found->pbCertEncoded, found->cbCertEncoded, CRYPT_STRING_BASE64HEADER, nullptr, &size);
        std::string text(size, '\0');
        if (CryptBinaryToStringA(found->pbCertEncoded, found->cbCertEncoded, CRYPT_STRING_BASE64HEADER, text.data(),
                                 &size))
            trusted.append(text, 0, size);
    }
    if (store != nullptr) CertCloseStore(store, 0);
    // An empty list would switch the check off.
    return trusted.empty() ? "none" : trusted;
}
#endif

bool isTlsFailure(CURLcode code) {
    constexpr std::array failures{CURLE_SSL_CONNECT_ERROR, CURLE_PEER_FAILED_VERIFICATION, CURLE_SSL_CERTPROBLEM,
                                  CURLE_SSL_CIPHER,        CURLE_SSL_CACERT_BADFILE,       CURLE_SSL_INVALIDCERTSTATUS};
    return std::ranges::count(failures, code) > 0;
}

// Replaces every `secret` in `text`.
void hide(std::string& text, const std::string& secret) {
    if (secret.size() < kShortestSecret) return;
    for (std::size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at + 3))
        text.replace(at, secret.size(), "***");
}

}  // namespace

const char* nameOf(MailStage stage) {
    constexpr std::array names{"mail library", "subject", "sender", "recipient", "server's name or port",
                               "connect",      "TLS",     "logon",  "sender",    "recipient",
                               "data"};
    return names[static_cast<std::size_t>(stage)];
}

// One send. libcurl calls back on the thread that performs it. The commands that it sends tell the stage.
class MailRun {
  public:
    MailRun(Mailer& mailer, const Email& email, TimePoint start)
        : mailer_(mailer),
          email_(email),
          deadline_(start + mailer.timeLimit_),
          secrets_{mailer.password_, encodeBase64(mailer.password_)} {}

    // Returns whether the server accepted the e-mail.
    bool perform();

  private:
    bool setUp(CURL* curl, const std::string& address);
    void onCommand(std::string_view line);
    void onAnswer(std::string_view line);
    void reportFailure(CURLcode code);
    void report(const std::string& line) { mailer_.report_("sendEmail: " + line); }
    std::string makeReportable(std::string_view text) const;
    void enter(MailStage stage) {
        stage_ = stage;
        answer_.clear();
    }

    static int onDebug(CURL*, curl_infotype type, char* text, std::size_t size, void* run);
    static int onProgress(void* run, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
    static std::size_t onRead(char* buffer, std::size_t size, std::size_t count, void* run);

    Mailer& mailer_;
    const Email& email_;
    TimePoint deadline_;
    CURL* curl_ = nullptr;
    CurlList recipients_;
    std::string sender_;
    std::string message_;
    std::size_t sent_ = 0;
    MailStage stage_ = MailStage::kConnect;
    bool hasTls_ = mailer_.port_ == Mailer::kTlsPort;  // there, no command is sent before the handshake
    bool isLeaving_ = false;
    std::string answer_;                // the last line of the server in this stage
    std::vector<std::string> secrets_;  // the password and what the logon has sent
    std::array<char, CURL_ERROR_SIZE> error_{};
};

bool MailRun::setUp(CURL* curl, const std::string& address) {
    curl_ = curl;
    sender_ = email_.from.address;
    for (const Mailbox& to : email_.to) {
        curl_slist* longer = curl_slist_append(recipients_.get(), to.address.c_str());
        if (longer == nullptr) return false;
        static_cast<void>(recipients_.release());
        recipients_.reset(longer);
    }
    message_ = formatEmail(email_, {static_cast<std::int64_t>(std::time(nullptr)), makeUnique()});
    bool good = true;
    const auto set = [&](CURLoption option, auto value) {
        good = curl_easy_setopt(curl, option, value) == CURLE_OK && good;
    };
    set(CURLOPT_ERRORBUFFER, error_.data());
    set(CURLOPT_URL, address.c_str());
    set(CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_TRY));
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    // On Windows: accept a certificate whose revocation list cannot be reached.
    set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_REVOKE_BEST_EFFORT));
    if (!mailer_.trustedCertificates_.empty()) set(CURLOPT_CAINFO, mailer_.trustedCertificates_.c_str());
    if (!mailer_.userName_.empty()) {
        set(CURLOPT_USERNAME, mailer_.userName_.c_str());
        set(CURLOPT_PASSWORD, mailer_.password_.c_str());
        set(CURLOPT_LOGIN_OPTIONS, "AUTH=DIGEST-MD5;AUTH=CRAM-MD5;AUTH=NTLM;AUTH=PLAIN;AUTH=LOGIN");
    }
    set(CURLOPT_MAIL_FROM, sender_.c_str());
    set(CURLOPT_MAIL_RCPT, recipients_.get());
    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_READFUNCTION, &MailRun::onRead);
    set(CURLOPT_READDATA, static_cast<void*>(this));
    set(CURLOPT_VERBOSE, 1L);
    set(CURLOPT_DEBUGFUNCTION, &MailRun::onDebug);
    set(CURLOPT_DEBUGDATA, static_cast<void*>(this));
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &MailRun::onProgress);
    set(CURLOPT_XFERINFODATA, static_cast<void*>(this));
    // Close the connection within the send, so that onAnswer() sees the server's goodbye.
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    // Do not wait at the end for a name that is still being looked up.
    set(CURLOPT_QUICK_EXIT, 1L);
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(std::max<std::int64_t>(left.count(), 1)));
#ifdef _WIN32
    std::string trusted = mailer_.trustedCertificates_.empty() ? trustedWhereUnchecked() : std::string();
    curl_blob blob{trusted.data(), trusted.size(), CURL_BLOB_COPY};
    if (!trusted.empty()) set(CURLOPT_CAINFO_BLOB, &blob);
#else
    // Ignore what this machine sets for other programs.
    set(CURLOPT_PROXY, "");
    set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
#endif
    return good;
}

bool MailRun::perform() {
    MailFailure& failure = mailer_.failure_;
    failure = {};
    const std::string address = formatAddress(mailer_.host_, mailer_.port_);
    if (const auto fault = findFault(email_))
        failure.stage = *fault == EmailFault::kSubject  ? MailStage::kSubject
                        : *fault == EmailFault::kSender ? MailStage::kFrom
                                                        : MailStage::kTo;
    else if (address.empty())
        failure.stage = MailStage::kHost;
    if (failure.stage != MailStage::kStart) {
        report(std::string("Email not sent: the ").append(nameOf(failure.stage)).append(" is not valid"));
        return false;
    }
    const CurlHandle curl(startLibrary() ? curl_easy_init() : nullptr);
    if (curl == nullptr || !setUp(curl.get(), address)) {
        report("Email not sent: the mail library is not ready");
        return false;
    }
    report("Email goes to " + makeReportable(address));
    const CURLcode code = curl_easy_perform(curl.get());
    if (code != CURLE_OK) {
        mailer_.closedCleanly_ = false;
        reportFailure(code);
        return false;
    }
    report(hasTls_ ? "Email sent with TLS" : "Email sent without TLS");
    if (!mailer_.closedCleanly_) report("Email connection not closed cleanly");
    return true;
}

void MailRun::reportFailure(CURLcode code) {
    // On port 465, the handshake comes before any command. If we know no kind of logon that the server offers, there is
    // no AUTH command.
    if (stage_ == MailStage::kConnect && isTlsFailure(code)) stage_ = MailStage::kTls;
    if (code == CURLE_LOGIN_DENIED) stage_ = MailStage::kLogon;
    const bool isCancelled = mailer_.cancelled_.load(std::memory_order_relaxed);
    const bool timedOut = !isCancelled && (code == CURLE_ABORTED_BY_CALLBACK || code == CURLE_OPERATION_TIMEDOUT);
    const std::string reason = isCancelled           ? "cancelled"
                               : timedOut            ? "time limit reached"
                               : error_.front() != 0 ? makeReportable(error_.data())
                                                     : curl_easy_strerror(code);
    const bool isRefusal = answer_.starts_with('4') || answer_.starts_with('5');
    mailer_.failure_ = {stage_, isRefusal ? answer_ : reason, timedOut};
    std::string line = "Email not sent, stage ";
    line.append(nameOf(stage_)).append(": ").append(reason);
    if (!answer_.empty()) line.append("; the server said '").append(answer_).append("'");
    report(line);
}

// Removes secrets and control characters, and shortens a long text.
std::string MailRun::makeReportable(std::string_view text) const {
    std::string clean(text.substr(0, text.find_last_not_of("\r\n") + 1));
    for (const std::string& secret : secrets_)
        hide(clean, secret);
    if (clean.size() > kLongestAnswer) clean.resize(kLongestAnswer);
    std::ranges::replace_if(
        clean, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, '?');
    return clean;
}

// ---------------------------------------------------------------------------------------------------------------------
// What the console and the server say

void MailRun::onCommand(std::string_view line) {
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    const auto is = [line](std::string_view verb) { return line.substr(0, verb.size()) == verb; };
    if (is("AUTH ")) {
        enter(MailStage::kLogon);
        // Other kinds of logon prove that they know the password, and do not send it.
        if (!hasTls_ && !mailer_.password_.empty() && (is("AUTH PLAIN") || is("AUTH LOGIN")))
            report("the server offers no TLS, the password goes in clear");
    } else if (stage_ == MailStage::kLogon && !is("MAIL FROM") && !is("QUIT")) {
        secrets_.emplace_back(line);
    } else if (is("STARTTLS")) {
        enter(MailStage::kTls);
        // The server offers TLS. From here on, libcurl treats a refusal as a failure and does not go on unencrypted.
        curl_easy_setopt(curl_, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
    } else if (stage_ == MailStage::kTls && (is("EHLO") || is("HELO"))) {
        hasTls_ = true;
        enter(MailStage::kConnect);
    } else if (is("MAIL FROM")) {
        if (stage_ != MailStage::kLogon && !mailer_.userName_.empty())
            report("the server takes no logon, it goes without");
        enter(MailStage::kSender);
    } else if (is("RCPT TO")) {
        enter(MailStage::kRecipient);
    } else if (line == "DATA") {
        enter(MailStage::kData);
    } else if (line == "QUIT") {
        // Keep the stage and its answer: a failure was there.
        isLeaving_ = true;
        deadline_ = std::min(deadline_, std::chrono::steady_clock::now() + kLeaveLimit);
    }
}

void MailRun::onAnswer(std::string_view line) {
    if (isLeaving_)
        mailer_.closedCleanly_ = line.starts_with("221");
    else
        answer_ = makeReportable(line);
}

int MailRun::onDebug(CURL*, curl_infotype type, char* text, std::size_t size, void* run) {
    auto* self = static_cast<MailRun*>(run);
    try {
        if (type == CURLINFO_HEADER_OUT)
            self->onCommand({text, size});
        else if (type == CURLINFO_HEADER_IN)
            self->onAnswer({text, size});
    } catch (const std::exception&) {
        // No memory for a line of the log: go on with the send.
    }
    return 0;
}

int MailRun::onProgress(void* run, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    const auto* self = static_cast<const MailRun*>(run);
    const bool cancelled = self->mailer_.cancelled_.load(std::memory_order_relaxed);
    return cancelled || std::chrono::steady_clock::now() >= self->deadline_ ? 1 : 0;
}

std::size_t MailRun::onRead(char* buffer, std::size_t size, std::size_t count, void* run) {
    auto* self = static_cast<MailRun*>(run);
    const std::size_t part = std::min(size * count, self->message_.size() - self->sent_);
    self->message_.copy(buffer, part, self->sent_);
    self->sent_ += part;
    return part;
}

// ---------------------------------------------------------------------------------------------------------------------

Mailer::Mailer(Report report) : report_(std::move(report)) {}

bool Mailer::send(const Email& email) {
    closedCleanly_ = false;
    return MailRun(*this, email, std::chrono::steady_clock::now()).perform();
}

bool Mailer::close() {
    return closedCleanly_;
}

}  // namespace orvc
