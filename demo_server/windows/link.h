// One open link: the server, and the thread that makes the callbacks.
#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>

#include "demo_server/core/server.h"
#include "demo_server/windows/owned_handle.h"
#include "demo_server/windows/slim_lock.h"
#include "demo_server/windows/windows_host.h"
#include "link/ks_types.h"

namespace orvc::demo {

// Calls come from any thread. The event thread keeps the link alive while it runs, and the library loaded.
class Link : public std::enable_shared_from_this<Link> {
  public:
    // Loads or makes up the installation and starts the event thread. Null when the thread cannot be had.
    static std::shared_ptr<Link> open(const Options& options, KSEventCallback callback);

    // Ends the logon, makes the last callback the last, and saves. When this returns no callback runs, unless it is
    // called from one. While it waits for a callback to return it answers messages that other threads send to the
    // caller's windows, since that is what the callback may be waiting for.
    void close();

    // Runs `call` on the server under the lock, and wakes the event thread to what it left to do.
    template <typename Call>
    std::int32_t with(Call&& call) {
        std::int32_t result = kRefused;
        {
            const std::lock_guard guard(lock_);
            if (closing_) return kRefused;
            result = call(*server_);
        }
        SetEvent(wake_.get());
        return result;
    }

    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

  private:
    Link(const Options& options, KSEventCallback callback);

    static DWORD WINAPI runThread(void* link);
    bool startThread();
    void runEvents();
    // Takes what is due and says how long to wait when nothing is.
    DWORD takeWork(Batch& batch, std::optional<std::string>& toSave);
    void deliver(const Batch& batch);
    void save(const std::string& text);
    void saveAtClose();
    void waitForThread();

    const KSEventCallback callback_;
    std::filesystem::path file_;  // empty: nothing is kept
    WindowsHost host_;
    std::unique_ptr<Server> server_;  // under lock_
    SlimLock lock_;
    std::atomic<bool> closing_{false};
    OwnedHandle wake_;
    OwnedHandle thread_;
    DWORD threadId_ = 0;
};

}  // namespace orvc::demo
