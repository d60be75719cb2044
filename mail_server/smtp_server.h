// A mail server on loopback that speaks SMTP as a script says, well or badly, and keeps what it receives.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvc {

// One connection's bytes. Both return at most 0 when the other side is gone.
class Channel {
  public:
    virtual ~Channel() = default;
    virtual int read(char* buffer, int size) = 0;
    virtual int write(const char* bytes, int size) = 0;
};

using SocketHandle = std::intptr_t;

// Turns a connection into an encrypted one, as the server's side; null when the handshake fails.
using StartTls = std::function<std::unique_ptr<Channel>(SocketHandle socket)>;

struct SmtpScript {
    int port = 0;  // 0 = the first free one that the Email page takes without a word
    std::string greeting = "220 test server";
    std::vector<std::string> features{};  // what EHLO lists
    std::map<std::string, std::string>
        answers{};                          // by command ("MAIL", "RCPT" …, "." ends the message), instead of 2xx
    std::vector<std::string> challenges{};  // to AUTH, in base64; absent: as PLAIN and LOGIN need them
    std::string hangAt{};                   // from this command, or the "greeting", on the server is silent
    std::string dropAt{};                   // at this command, the "greeting", or in the "message", it hangs up
    std::string bytesAfterStartTls{};       // said in clear behind the answer to STARTTLS
    StartTls startTls{};                    // absent: the handshake is refused
    bool tlsFirst = false;                  // TLS from the first byte
};

// Thread: made and asked on any one thread; serves connections, one after the other, on its own.
class SmtpServer {
  public:
    explicit SmtpServer(SmtpScript script);
    ~SmtpServer();
    SmtpServer(const SmtpServer&) = delete;
    SmtpServer& operator=(const SmtpServer&) = delete;

    // False when no port is to be had.
    bool isListening() const { return port_ != 0; }
    int port() const { return port_; }

    // The commands so far, each as it came; those within TLS begin with "TLS ". Answers to AUTH are commands too.
    std::vector<std::string> commands() const;
    // Waits until a command that begins so has come.
    bool waitForCommand(const std::string& beginning) const;
    // Ends the silence that the script wants.
    void resume() { resumed_ = true; }
    // Every byte that came in clear.
    std::string clearBytes() const;
    // The last message, dots unstuffed, lines ended with CR LF.
    std::string message() const;
    int connections() const;

  private:
    class Conversation;

    void serve();
    static bool hasInput(SocketHandle socket);
    bool waitForInput(SocketHandle socket) const;

    SmtpScript script_;
    SocketHandle listener_;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::atomic<bool> resumed_{false};
    mutable std::mutex mutex_;  // guards everything down to connections_
    mutable std::condition_variable changed_;
    std::vector<std::string> commands_;
    std::string clearBytes_;
    std::string message_;
    int connections_ = 0;
    std::thread thread_;
};

}  // namespace orvc
