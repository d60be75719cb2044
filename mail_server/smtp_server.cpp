#include "mail_server/smtp_server.h"

#ifdef _WIN32
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#endif

#include <cstring>
#include <optional>
#include <utility>

namespace orvc {
namespace {

#ifdef _WIN32
using Socket = SOCKET;
using Length = int;
constexpr int kNoSignal = 0;
void startSockets() {
    static const int started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    static_cast<void>(started);
}
void closeSocket(SocketHandle socket) {
    closesocket(static_cast<Socket>(socket));
}
#else
using Socket = int;
using Length = socklen_t;
constexpr int kNoSignal = MSG_NOSIGNAL;
void startSockets() {
    // A connection that is gone is told by the write's result.
    std::signal(SIGPIPE, SIG_IGN);
}
void closeSocket(SocketHandle socket) {
    close(static_cast<Socket>(socket));
}
#endif

class ClearChannel final : public Channel {
  public:
    explicit ClearChannel(SocketHandle socket) : socket_(static_cast<Socket>(socket)) {}
    int read(char* buffer, int size) override {
        return static_cast<int>(recv(socket_, buffer, static_cast<std::size_t>(size), 0));
    }
    int write(const char* bytes, int size) override {
        return static_cast<int>(send(socket_, bytes, static_cast<std::size_t>(size), kNoSignal));
    }

  private:
    Socket socket_;
};

}  // namespace

// One connection from its greeting to its end.
class SmtpServer::Conversation {
  public:
    Conversation(SmtpServer& server, SocketHandle socket)
        : server_(server), script_(server.script_), socket_(socket), channel_(std::make_unique<ClearChannel>(socket)) {}

    void run() {
        if (script_.tlsFirst && !startTls()) return;
        if (script_.dropAt == "greeting") return;
        if (script_.hangAt == "greeting" && !hang()) return;
        say(script_.greeting);
        while (const auto line = readLine())
            if (!obey(*line)) return;
    }

  private:
    bool obey(const std::string& line) {
        note(line);
        const std::string verb = line.substr(0, line.find(' '));
        if (verb == script_.dropAt) return false;
        if (verb == script_.hangAt && !hang()) return false;
        if (const auto answer = script_.answers.find(verb); answer != script_.answers.end()) {
            say(answer->second);
            return verb != "QUIT";
        }
        if (verb == "EHLO") {
            sayFeatures();
        } else if (verb == "STARTTLS") {
            say("220 go ahead", script_.bytesAfterStartTls);
            return startTls();
        } else if (verb == "AUTH") {
            return logOn(line);
        } else if (verb == "DATA") {
            say("354 go ahead");
            return readMessage();
        } else if (verb == "QUIT") {
            say("221 bye");
            return false;
        } else {
            say("250 fine");
        }
        return true;
    }

    void sayFeatures() {
        std::string text = "250-test server";
        for (const std::string& feature : script_.features)
            text.append("\r\n250-").append(feature);
        say(text.append("\r\n250 8BITMIME"));
    }

    bool logOn(const std::string& line) {
        std::vector<std::string> challenges = script_.challenges;
        if (challenges.empty()) challenges.resize(line.starts_with("AUTH LOGIN") ? 2 : 1);
        for (const std::string& challenge : challenges) {
            say("334 " + challenge);
            const auto answer = readLine();
            if (!answer) return false;
            note(*answer);
        }
        const auto verdict = script_.answers.find("verdict");
        say(verdict != script_.answers.end() ? verdict->second : "235 welcome");
        return true;
    }

    bool readMessage() {
        std::string message;
        while (const auto line = readLine()) {
            if (script_.dropAt == "message") return false;
            if (*line == ".") {
                {
                    const std::lock_guard lock(server_.mutex_);
                    server_.message_ = message;
                }
                return obey(".");
            }
            message.append(line->starts_with('.') ? line->substr(1) : *line).append("\r\n");
        }
        return false;
    }

    bool startTls() {
        if (!script_.startTls) {
            constexpr char alert[] = "\x15\x03\x03\x00\x02\x02\x28";  // fatal: handshake failure
            channel_->write(alert, sizeof alert - 1);
            // What the other side answers is of interest.
            while (readLine())
                ;
            return false;
        }
        if (!buffer_.empty()) return false;
        channel_ = script_.startTls(socket_);
        encrypted_ = true;
        return channel_ != nullptr;
    }

    std::optional<std::string> readLine() {
        std::size_t end;
        while ((end = buffer_.find("\r\n")) == std::string::npos) {
            // What TLS has decrypted already does not wait in the socket: its channel waits itself.
            if (!encrypted_ && !server_.waitForInput(socket_)) return std::nullopt;
            char bytes[4096];
            const int size = channel_->read(bytes, sizeof bytes);
            if (size <= 0) return std::nullopt;
            buffer_.append(bytes, static_cast<std::size_t>(size));
            if (encrypted_) continue;
            const std::lock_guard lock(server_.mutex_);
            server_.clearBytes_.append(bytes, static_cast<std::size_t>(size));
        }
        std::string line = buffer_.substr(0, end);
        buffer_.erase(0, end + 2);
        return line;
    }

    void say(const std::string& text, const std::string& more = {}) {
        const std::string line = text + "\r\n" + more;
        channel_->write(line.data(), static_cast<int>(line.size()));
    }

    void note(const std::string& line) {
        const std::lock_guard lock(server_.mutex_);
        server_.commands_.push_back(encrypted_ ? "TLS " + line : line);
        server_.changed_.notify_all();
    }

    // False when there is nothing to go on with.
    bool hang() {
        char bytes[4096];
        while (!server_.resumed_ && !server_.stopping_)
            if (server_.hasInput(socket_) && channel_->read(bytes, sizeof bytes) <= 0) return false;
        return server_.resumed_;
    }

    SmtpServer& server_;
    const SmtpScript& script_;
    SocketHandle socket_;
    std::unique_ptr<Channel> channel_;
    bool encrypted_ = false;
    std::string buffer_;
};

SmtpServer::SmtpServer(SmtpScript script) : script_(std::move(script)) {
    startSockets();
    const Socket listener = socket(AF_INET, SOCK_STREAM, 0);
    listener_ = static_cast<SocketHandle>(listener);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    constexpr int first = 2525;
    constexpr int last = 32'000;
    const auto canBind = [&](int port) {
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        return bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    };
    int port = script_.port != 0 ? script_.port : first;
    while (!canBind(port))
        if (script_.port != 0 || port++ == last) return;
    if (listen(listener, 8) != 0) return;
    port_ = port;
    thread_ = std::thread([this] { serve(); });
}

SmtpServer::~SmtpServer() {
    stopping_ = true;
    if (thread_.joinable()) thread_.join();
    closeSocket(listener_);
}

// Waits for a moment.
bool SmtpServer::hasInput(SocketHandle socket) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(static_cast<Socket>(socket), &readable);
    timeval pause{0, 20'000};
    return select(static_cast<int>(socket) + 1, &readable, nullptr, nullptr, &pause) > 0;
}

// False when the server is to stop.
bool SmtpServer::waitForInput(SocketHandle socket) const {
    while (!stopping_)
        if (hasInput(socket)) return true;
    return false;
}

void SmtpServer::serve() {
    while (waitForInput(listener_)) {
        const auto socket = static_cast<SocketHandle>(accept(static_cast<Socket>(listener_), nullptr, nullptr));
        if (socket < 0) continue;
        {
            const std::lock_guard lock(mutex_);
            ++connections_;
        }
        Conversation(*this, socket).run();
        closeSocket(socket);
    }
}

std::vector<std::string> SmtpServer::commands() const {
    const std::lock_guard lock(mutex_);
    return commands_;
}

bool SmtpServer::waitForCommand(const std::string& beginning) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(10), [&] {
        for (const std::string& command : commands_)
            if (command.starts_with(beginning)) return true;
        return false;
    });
}

std::string SmtpServer::clearBytes() const {
    const std::lock_guard lock(mutex_);
    return clearBytes_;
}

std::string SmtpServer::message() const {
    const std::lock_guard lock(mutex_);
    return message_;
}

int SmtpServer::connections() const {
    const std::lock_guard lock(mutex_);
    return connections_;
}

}  // namespace orvc
