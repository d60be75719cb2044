// The log's system in memory, with disks that fail on demand, and a log that writes into the journal.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <map>
#include <set>

#include "fake_clock.h"
#include "journal.h"
#include "support/tracking_log.h"

namespace orvc {

class FakeLogSystem final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string& path) override {
        if (onOpen) onOpen();
        const std::lock_guard lock(mutex_);
        return unopenable.contains(path) ? nullptr : std::make_unique<File>(*this, files_[path]);
    }
    bool removeFile(const std::string& path) override { return !inUse && files_.erase(path) != 0; }
    bool emptyFile(const std::string& path) override {
        if (!files_.contains(path) || unopenable.contains(path)) return false;
        files_[path].clear();
        return true;
    }
    void writeToDebugger(const char* text) override {
        const std::lock_guard lock(mutex_);
        debugger_.emplace_back(text);
        if (journal != nullptr) journal->add(withoutPrefix(text));
        changed_.notify_all();
    }

    std::string file(const std::string& path) const {
        const std::lock_guard lock(mutex_);
        const auto found = files_.find(path);
        return found != files_.end() ? found->second : "(no such file)";
    }
    std::vector<std::string> takeDebuggerTexts() { return std::exchange(debugger_, {}); }
    // Wait for the writer to get there; false when it does not.
    bool waitForDebuggerText(const std::string& text) {
        return wait([&] { return std::ranges::find(debugger_, text) != debugger_.end(); });
    }
    // The writer looks for lines ten times a second.
    bool waitForFlush(int count) {
        return wait([&] { return flushes_ >= count; }, std::chrono::seconds(3));
    }

    std::set<std::string> unopenable;
    std::function<void()> onOpen;  // runs inside each opening
    bool inUse = false;            // another program has the files open: none can be deleted
    std::atomic<bool> writesFail = false;
    std::atomic<bool> flushesFail = false;
    Journal* journal = nullptr;

  private:
    struct File final : LogFile {
        File(FakeLogSystem& owner, std::string& text) : system(owner), contents(text) {}
        bool write(std::string_view bytes) override {
            const std::lock_guard lock(system.mutex_);
            if (!system.writesFail) contents += bytes;
            return !system.writesFail;
        }
        bool flush() override {
            const std::lock_guard lock(system.mutex_);
            ++system.flushes_;
            system.changed_.notify_all();
            return !system.flushesFail;
        }
        FakeLogSystem& system;
        std::string& contents;
    };

    static std::string withoutPrefix(std::string text) {
        const std::size_t prefix = text.find(") ");
        const bool isLine = prefix != std::string::npos && text[0] >= '0' && text[0] <= '9';
        text = (isLine ? "log: " : "debugger: ") + (isLine ? text.substr(prefix + 2) : text);
        return text.substr(0, text.size() - 1);  // without its line feed
    }
    template <typename Condition>
    bool wait(Condition condition, std::chrono::seconds limit = std::chrono::seconds(20)) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, condition);
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, std::string> files_;
    std::vector<std::string> debugger_;
    int flushes_ = 0;
};

// A log without a file: its lines go to the journal as "log: message", what is meant for the debugger alone as
// "debugger: text".
struct JournalLog {
    explicit JournalLog(Journal& journal) { system.journal = &journal; }

    FakeLogSystem system;
    FakeClock clock;
    TrackingLog log{system, clock};
};

}  // namespace orvc
