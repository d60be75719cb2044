// The support tracking log: time-stamped lines about what the console does, in a file that support asks for.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/clock.h"
#include "support/text.h"

namespace orvc {

// One tracking file opened for appending. Used by the writer thread only; destroyed by the thread that opened it once
// the writer has ended.
class LogFile {
  public:
    virtual ~LogFile() = default;
    // Both return false when the system refuses: the disk is full, the share is gone.
    virtual bool write(std::string_view bytes) = 0;
    virtual bool flush() = 0;
};

// What the log needs of the system.
class LogSystem {
  public:
    virtual ~LogSystem() = default;
    // Opens `path` for appending so that a flush reaches the disk; null when that fails. User-interface thread.
    virtual std::unique_ptr<LogFile> openForAppending(const std::string& path) = 0;
    // Deletes a file; false when it is still there afterwards. User-interface thread.
    virtual bool removeFile(const std::string& path) = 0;
    // Cuts a file to no bytes; false when the system refuses. User-interface thread.
    virtual bool emptyFile(const std::string& path) = 0;
    // Shows a zero-terminated text in an attached debugger. Any thread.
    virtual void writeToDebugger(const char* text) = 0;
};

// Purpose: collects lines from any thread and writes them to the tracking file from one background thread, so that no
// caller waits for the disk.
//
// Threads: log(), logUncounted() and queueRaw() may be called from any thread. Everything else belongs to the
// user-interface thread. A caller formats on its own stack and appends to a queue under a short lock.
// Lifetime: `system` and `clock` outlive the log. The destructor closes the file.
// Guarantees: lines keep the order in which they were queued; every line queued before a close is in the file after it,
// unless a write failed. A message longer than its buffer is cut. Failures, lack of memory included, go to the
// debugger output only: log(), logUncounted() and OpenCloseDebugFile() throw nothing.
//
// While start-up lasts (from construction until endStartUp()) lines with a counter are taken whatever the recording
// setting is, and the file stays open once it is, so that a console that does not come up can be traced.
class TrackingLog {
  public:
    TrackingLog(LogSystem& system, const Clock& clock);
    ~TrackingLog();
    TrackingLog(const TrackingLog&) = delete;
    TrackingLog& operator=(const TrackingLog&) = delete;

    // Queues a line with time and counter: "11/21/2026 9:05:00 (00012) message". Dropped when recording is off.
    // The counter gives the milliseconds since the previous such line.
    void log(const char* format, ...) ORVC_PRINTF(2, 3);

    // Queues a line with time and without counter, whether or not recording is on.
    void logUncounted(const char* format, ...) ORVC_PRINTF(2, 3);

    // Queues `text` as it stands, carriage returns dropped. Returns 1, or 0 when no file is open and the text went to
    // the debugger output.
    int queueRaw(std::string_view text);

    // For what must never reach the file. Zero-terminated. Any thread.
    void writeToDebugger(const char* text) { system_.writeToDebugger(text); }

    // True when a line with counter would be taken: lets a hot path skip gathering its arguments. Any thread.
    bool isTakingLines() const { return startingUp_.load(std::memory_order_relaxed) || isRecording(); }

    // Opens the tracking file (closing one that is open), or closes it: when `close` is set, or when recording is off
    // and `force` is not. A file opened begins with a banner line that names the user.
    void OpenCloseDebugFile(bool close, bool force);

    // Ends the writer once it has written every queued line, and closes the file.
    void closeDebug();

    // Deletes the support folder's tracking file, or empties it while another program has it open, and starts a fresh
    // one when recording is on. A file at the root of drive C (the fall-back) stays. Returns false when the file is
    // there and could not be cleared.
    bool clear();

    // Ends start-up: closes the file and opens it again if recording is on.
    void endStartUp();

    // The recording setting as it is stored: 0 = off, anything else = on.
    std::int32_t recordEvents() const { return recordEvents_.load(std::memory_order_relaxed); }
    void setRecordEvents(std::int32_t value) { recordEvents_.store(value, std::memory_order_relaxed); }
    // The menu's toggle is a bitwise complement: 0 and -1 change places, and a stored 1 becomes -2 and stays on.
    void toggleRecordEvents() { setRecordEvents(~recordEvents()); }
    bool isRecording() const { return recordEvents() != 0; }

    // The folder of the tracking file, without a trailing backslash.
    void setSupportFolder(std::string folder) { supportFolder_ = std::move(folder); }
    const std::string& supportFolder() const { return supportFolder_; }

    // Whom the banner names: the logon ID while a user is logged on, empty otherwise.
    void setUser(std::string userName) { userName_ = std::move(userName); }

  private:
    void appendLine(bool counted, std::string_view message);
    std::string& roomForLocked(std::size_t size);
    void makeLine(bool counted, std::string_view message);
    const std::string& timeStampLocked();
    void openFile();
    bool startWriter();
    void stopWriter();
    void closeKeepingLines();
    void sendLinesToDebugger();
    void runWriter();
    bool writeQueued(std::unique_lock<std::mutex>& lock);

    LogSystem& system_;
    const Clock& clock_;
    std::string supportFolder_;
    std::string userName_;
    std::atomic<std::int32_t> recordEvents_{0};
    std::atomic<bool> startingUp_{true};

    std::mutex mutex_;  // guards everything down to quit_
    std::condition_variable wake_;
    std::vector<std::string> queue_;  // lines in chunks, oldest first
    std::string spareChunk_;
    std::string timeStamp_;  // of the second stampedSecond_
    std::int64_t stampedSecond_ = -1;
    std::uint32_t lastTick_;
    bool fileOpen_ = false;
    bool quit_ = false;
    bool writeFailed_ = false;  // the writer has ended, the file is still open

    std::unique_ptr<LogFile> file_;  // the writer's while it runs
    std::thread writer_;
    std::atomic<bool> writing_{false};  // the writer runs: it ends by itself when a write fails
};

}  // namespace orvc
