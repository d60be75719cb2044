// What waits to be sent: each run is one answer of the server, unrolled into callbacks only when its turn comes.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "demo_server/core/batch.h"
#include "demo_server/core/installation.h"
#include "demo_server/core/options.h"

namespace orvc::demo {

// Runs are sent one after another, each in as many batches as it takes. They read the installation as it is when a
// batch is filled: what changed meanwhile is told by a run behind. Used under the server's lock.
class Run {
  public:
    Run() = default;
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    virtual ~Run() = default;

    // Adds callbacks until the batch is full or nothing is left; true when the run is finished. May add nothing and ask
    // to be called again at due().
    virtual bool fill(Batch& batch, const Installation& installation, Millis now) = 0;

    // When the next callback may be made; 0 = at once.
    virtual Millis due() const { return 0; }
};

using RunPointer = std::unique_ptr<Run>;

// Single callbacks.
RunPointer makeSignalRun(std::uint32_t code);
RunPointer makeTextRun(std::uint32_t code, std::string text);
RunPointer makeServerTimeRun(std::uint32_t utcSeconds);
RunPointer makeStringRun(std::string name, std::uint32_t type, std::string text);
RunPointer makeDwordRun(std::string name, std::uint32_t type, std::uint32_t number);
// A key's notification.
RunPointer makeKeyRun(std::string name, std::uint32_t type);

// Everything that removing a key took away; the deleted mark is added here.
RunPointer makeRemovedRun(std::vector<VariableTree::Removed> removed);

// The installation's lists.
RunPointer makeDevicesRun();
RunPointer makeGroupsRun();
RunPointer makeQueuesRun();
RunPointer makeMessagesRun();  // with the empty key at its end
RunPointer makeMembersRun(std::uint32_t groupId);

// A file in pieces of 1,000 bytes and the empty piece that ends it.
RunPointer makeFileRun(const KSGuid& file, std::shared_ptr<const std::string> bytes);

// How a subscription is answered.
struct SubscriptionManner {
    Millis slow = 0;                           // the pause before each notification
    std::optional<std::uint32_t> shuffleSeed;  // in a shuffled order
    bool withoutSettingsMark = false;          // without \ORVS\completeBits
};

// Every key and value below `path`.
RunPointer makeVariablesRun(std::string path, const SubscriptionManner& manner);

}  // namespace orvc::demo
