// The demo server itself: what it answers to each call, and what it sends when.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "demo_server/core/batch.h"
#include "demo_server/core/installation.h"
#include "demo_server/core/options.h"
#include "demo_server/core/runs.h"
#include "link/ks_types.h"

namespace orvc::demo {

// What the server needs of the system that it runs on. Called under the server's lock.
class Host {
  public:
    virtual ~Host() = default;
    // Takes the user's name for this console; false when a console of the machine has it already.
    virtual bool claimUser(const std::string& name) = 0;
    // Gives back the name that was claimed last.
    virtual void releaseUser() = 0;
    virtual Millis ticks() const = 0;
    virtual std::uint32_t utcSeconds() const = 0;
};

// Results of the calls, apart from those of a logon.
inline constexpr std::int32_t kDone = 0;
inline constexpr std::int32_t kRefused = -1;

// One opened link with its installation. It has no thread and takes no lock: the owner calls every member under one
// lock of its own, except generation(). Calls put answers into a queue; the event thread takes them out in batches and
// delivers them with the lock released.
//
// Every call but start() and stop() is refused while nobody is logged on. Stand-alone, there is no logon: the server
// behaves from the start as it does after one.
class Server {
  public:
    // `notices` are told after each logon, with the complaints about the options. The host outlives the server.
    Server(Installation installation, Options options, std::vector<std::string> notices, Host& host);
    ~Server();

    // Logs on. The result is one of logon_result or an answer that the options ask for; `isAdmin` is set on success.
    std::int32_t start(const KSSocketAddress& address, std::string_view logonId, std::string_view password,
                       bool& isAdmin);
    // Logs off: what is still to be sent is forgotten, and the stop event sent instead.
    std::int32_t stop();
    // Logs off without a word, for good.
    void close();

    std::int32_t createGroup(const KSGroupRecord& group);
    std::int32_t deleteGroup(std::uint32_t groupId);
    std::int32_t sendGroupMembers(std::uint32_t groupId);
    std::int32_t sendMessages();
    std::int32_t resendSettings();

    // Creates the key, or removes it with everything beneath when its path ends in a backslash.
    std::int32_t createKey(std::string_view path, bool create);
    std::int32_t subscribe(std::string_view path);
    std::int32_t setString(std::string_view name, std::uint32_t type, std::string_view text);
    std::int32_t setDword(std::string_view name, std::uint32_t type, std::uint32_t number);

    std::int32_t createFile(KSGuid& created);
    std::int32_t readFile(const KSGuid& file);
    std::int32_t writeFile(const KSGuid& file, std::string bytes);
    std::int32_t deleteFile(const KSGuid& file);

    // Does what is due by now and fills the batch (cleared before) with what is to be delivered next.
    void takeBatch(Batch& batch);
    // When takeBatch() or takeDueSave() has something to do next; nothing = not before the next call.
    std::optional<Millis> nextWork() const;
    // Counts the logons' ends: a batch of an earlier count must not be delivered any more. Any thread, no lock needed.
    std::uint32_t generation() const { return generation_.load(std::memory_order_acquire); }

    // The installation's text, when a change is old enough to be saved; after it, the changes count as saved.
    std::optional<std::string> takeDueSave();
    // The same for any change, however new.
    std::optional<std::string> takeSave();
    // The text could not be written: it is offered again later.
    void saveFailed();
    // Has the installation saved even though nothing changed, because it has no file yet.
    void markChanged();

    const Installation& installation() const { return installation_; }

  private:
    enum class Action : std::uint8_t { kStop, kTellStop, kAnnounceReload, kFireEvent, kSendMembers };
    struct Appointment {
        Millis due;
        Action action;
        std::uint32_t groupId;
    };

    void sendDirectory();
    void beginSession();
    void drawFaults();
    void makeAppointments();
    void endLogon();
    void keep(const Appointment& appointment);
    void keepDueAppointments();
    SubscriptionManner subscriptionManner() const;

    bool isSubscribed(std::string_view name) const;
    void queue(RunPointer run) { outbox_.push_back(std::move(run)); }
    void fireSomeEvent();

    Installation installation_;
    Options options_;
    const std::vector<std::string> notices_;
    Host& host_;

    bool loggedOn_ = false;
    std::size_t logons_ = 0;
    std::size_t refusalsGiven_ = 0;
    std::optional<std::string> subscribedPath_;
    std::deque<RunPointer> outbox_;
    std::vector<Appointment> appointments_;
    std::atomic<std::uint32_t> generation_{0};
    std::mt19937 random_;
    std::mt19937 faults_;

    std::optional<Millis> firstChange_;  // since the last save
    Millis saveDue_ = 0;
};

}  // namespace orvc::demo
