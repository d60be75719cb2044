#include "support/tracking_log.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <iterator>

namespace orvc {
namespace {

constexpr std::size_t kMessageBufferSize = 4096;
constexpr std::size_t kUncountedBufferSize = 256;
constexpr std::size_t kChunkSize = 64 * 1024;
constexpr auto kIdlePause = std::chrono::milliseconds(100);
constexpr const char* kFileName = "\\ORVCTracking.txt";
constexpr const char* kFallbackPath = "c:\\ORVCTracking.txt";

// Formats into `buffer`, cut to its size, and returns what was written.
template <std::size_t N>
std::string_view formatInto(std::array<char, N>& buffer, const char* format, std::va_list arguments) {
    const int length = std::vsnprintf(buffer.data(), N, format, arguments);
    if (length < 0) return {};
    return {buffer.data(), std::min<std::size_t>(static_cast<std::size_t>(length), N - 1)};
}

// "(%05d) ", several times as fast as printf. Returns the length.
std::size_t formatCount(int value, std::array<char, 16>& buffer) {
    constexpr std::ptrdiff_t kWidth = 5;
    char* out = buffer.data();
    *out++ = '(';
    std::array<char, 12> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    const char* const begin = digits.data() + (value < 0 ? 1 : 0);
    if (value < 0) *out++ = '-';
    out = std::fill_n(out, std::max<std::ptrdiff_t>(0, kWidth - (end - digits.data())), '0');
    out = std::copy(begin, end, out);
    *out++ = ')';
    *out++ = ' ';
    return static_cast<std::size_t>(out - buffer.data());
}

}  // namespace

TrackingLog::TrackingLog(LogSystem& system, const Clock& clock)
    : system_(system), clock_(clock), lastTick_(clock.tickCount()) {}

TrackingLog::~TrackingLog() {
    closeDebug();
}

void TrackingLog::log(const char* format, ...) {
    if (!isTakingLines()) return;
    std::array<char, kMessageBufferSize> buffer;
    std::va_list arguments;
    va_start(arguments, format);
    const std::string_view message = formatInto(buffer, format, arguments);
    va_end(arguments);
    appendLine(true, message);
}

void TrackingLog::logUncounted(const char* format, ...) {
    std::array<char, kUncountedBufferSize> buffer;
    std::va_list arguments;
    va_start(arguments, format);
    const std::string_view message = formatInto(buffer, format, arguments);
    va_end(arguments);
    appendLine(false, message);
}

int TrackingLog::queueRaw(std::string_view text) {
    {
        const std::lock_guard lock(mutex_);
        if (fileOpen_) {
            if (!writeFailed_) std::ranges::remove_copy(text, std::back_inserter(roomForLocked(text.size())), '\r');
            return 1;
        }
    }
    system_.writeToDebugger(std::string(text).c_str());
    return 0;
}

void TrackingLog::appendLine(bool counted, std::string_view message) {
    try {
        makeLine(counted, message);
    } catch (const std::exception&) {
        system_.writeToDebugger("A line of the tracking file was lost: no memory\n");
    }
}

void TrackingLog::makeLine(bool counted, std::string_view message) {
    std::string withoutReturns;
    if (message.find('\r') != std::string_view::npos) {
        withoutReturns = message;
        std::erase(withoutReturns, '\r');
        message = withoutReturns;
    }
    std::array<char, 16> count;
    std::size_t countLength = 0;
    std::string toDebugger;
    {
        const std::lock_guard lock(mutex_);
        const std::string& stamp = timeStampLocked();
        if (counted) {
            const std::uint32_t tick = clock_.tickCount();
            countLength = formatCount(static_cast<int>(tick - lastTick_), count);
            lastTick_ = tick;
        }
        const std::string_view counter(count.data(), countLength);
        if (fileOpen_) {
            if (writeFailed_) return;  // nobody will write it
            roomForLocked(stamp.size() + counter.size() + message.size() + 1)
                .append(stamp)
                .append(counter)
                .append(message)
                .append(1, '\n');
            return;
        }
        toDebugger.append(stamp).append(counter).append(message).append("\n");
    }
    system_.writeToDebugger(toDebugger.c_str());
}

// The chunk that the next line goes into, with space for it: a line is queued whole or, when there is no memory for it,
// not at all.
std::string& TrackingLog::roomForLocked(std::size_t size) {
    if (queue_.empty() || queue_.back().size() + size > kChunkSize) {
        std::string chunk;
        if (spareChunk_.capacity() >= kChunkSize) chunk.swap(spareChunk_);
        chunk.reserve(std::max(kChunkSize, size));
        queue_.push_back(std::move(chunk));
    }
    return queue_.back();
}

const std::string& TrackingLog::timeStampLocked() {
    const std::int64_t now = clock_.now();
    if (now != stampedSecond_) {
        const LocalTime t = clock_.toLocal(now);
        timeStamp_ = formatText("%d/%02d/%02d %d:%02d:%02d ", t.month, t.day, t.year, t.hour, t.minute, t.second);
        stampedSecond_ = now;
    }
    return timeStamp_;
}

void TrackingLog::OpenCloseDebugFile(bool close, bool force) {
    const bool wanted = isRecording() || force;
    if (close || (!wanted && !startingUp_)) {
        closeDebug();
        return;
    }
    // Start-up is recorded whatever the setting is: a file that is open stays so.
    if (!wanted) return;
    try {
        openFile();
    } catch (const std::exception&) {
        closeDebug();
        system_.writeToDebugger("OpenCloseDebugFile: Failed to open the debug file: no memory\n");
    }
}

void TrackingLog::openFile() {
    std::string path = supportFolder_ + kFileName;
    if (file_) closeKeepingLines();
    file_ = system_.openForAppending(path);
    if (!file_) {
        path = kFallbackPath;
        file_ = system_.openForAppending(path);
    }
    if (!file_ || !startWriter()) {
        system_.writeToDebugger(
            formatText("OpenCloseDebugFile: Failed to open file '%s' as debug file", path.c_str()).c_str());
        sendLinesToDebugger();
        return;
    }
    queueRaw(userName_.empty() ? "** Starting write before console logon **\n"
                               : "** Starting write for console user '" + userName_ + "' **\n");
    if (path == kFallbackPath) log("OpenCloseDebugFile: Could not write to special folder, writing to ROOT");
}

bool TrackingLog::startWriter() {
    {
        const std::lock_guard lock(mutex_);
        quit_ = false;
        writeFailed_ = false;
        fileOpen_ = true;
    }
    try {
        writing_ = true;
        writer_ = std::thread([this] { runWriter(); });
        return true;
    } catch (const std::exception&) {
        // No thread, or no memory for one. Without a writer no line would ever reach the file: the log goes on as with
        // no file open.
        writing_ = false;
        closeDebug();
        return false;
    }
}

void TrackingLog::stopWriter() {
    if (writing_) {
        system_.writeToDebugger("closeDebug(): Signalled debug thread to quit\n");
        {
            const std::lock_guard lock(mutex_);
            quit_ = true;
        }
        wake_.notify_all();
    }
    if (writer_.joinable()) writer_.join();
}

void TrackingLog::closeDebug() {
    stopWriter();
    const std::lock_guard lock(mutex_);
    fileOpen_ = false;
    queue_.clear();
    file_.reset();
}

// Another file follows at once: lines that come meanwhile wait for it.
void TrackingLog::closeKeepingLines() {
    stopWriter();
    const std::lock_guard lock(mutex_);
    writeFailed_ = false;
    file_.reset();
}

// No file follows after all.
void TrackingLog::sendLinesToDebugger() {
    std::vector<std::string> lines;
    {
        const std::lock_guard lock(mutex_);
        fileOpen_ = false;
        lines.swap(queue_);
    }
    for (const std::string& chunk : lines)
        system_.writeToDebugger(chunk.c_str());
}

bool TrackingLog::clear() {
    closeDebug();
    const std::string path = supportFolder_ + kFileName;
    // A file that another console has open cannot be deleted, but it can be emptied.
    const bool cleared = system_.removeFile(path) || system_.emptyFile(path);
    OpenCloseDebugFile(false, false);
    return cleared;
}

void TrackingLog::endStartUp() {
    OpenCloseDebugFile(true, true);
    startingUp_ = false;
    OpenCloseDebugFile(false, false);
}

void TrackingLog::runWriter() {
    system_.writeToDebugger("Starting debugThread\n");
    bool unflushed = false;
    bool failed = false;
    std::unique_lock lock(mutex_);
    while (!failed && !(quit_ && queue_.empty())) {
        if (!queue_.empty()) {
            failed = !writeQueued(lock);
            unflushed = true;
            continue;
        }
        if (unflushed) {
            // What the file buffers may be refused only now; such a loss is a failed write like any other.
            lock.unlock();
            failed = !file_->flush();
            lock.lock();
            unflushed = false;
            continue;
        }
        // Lines do not wake the writer: it looks for them ten times a second, so that a caller only appends.
        wake_.wait_for(lock, kIdlePause, [this] { return quit_; });
    }
    if (failed) {
        // What comes until the file is closed is never written: it need not be kept.
        writeFailed_ = true;
        queue_.clear();
    }
    lock.unlock();
    if (failed) system_.writeToDebugger("debugThread: Write to debug tracking file failed - exitting thread\n");
    writing_ = false;
    system_.writeToDebugger("Ending debugThread\n");
}

bool TrackingLog::writeQueued(std::unique_lock<std::mutex>& lock) {
    std::vector<std::string> chunks;
    chunks.swap(queue_);
    lock.unlock();
    const bool written =
        std::all_of(chunks.begin(), chunks.end(), [this](const std::string& chunk) { return file_->write(chunk); });
    chunks.back().clear();
    lock.lock();
    spareChunk_.swap(chunks.back());
    return written;
}

}  // namespace orvc
