// log_bench FOLDER: what a line of the tracking log costs its caller and how soon it is on file, against spdlog's
// asynchronous logger (blocking when full, with 8,192 and with a million slots), and against only formatting the line.
#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <barrier>
#include <string>
#include <thread>

#include "bench.h"
#include "support/tracking_log.h"

namespace orvc::bench {
namespace {

constexpr int kPacedLines = 1000;
constexpr auto kPace = std::chrono::milliseconds(2);
constexpr auto kStall = std::chrono::seconds(2);
constexpr int kBurstLines = 200'000;

constexpr const char* kKey = "\\ORVS\\Events\\{1B2C3D4E-51B2-4C03-9E44-0123456789AB}\\EventName";
constexpr const char* kText = "Front door, east wing";
constexpr unsigned kType = 0xC0000001;

// A file of the C library; its first write can be made to hang as a network share does.
class BenchFile final : public LogFile {
  public:
    BenchFile(const std::string& path, bool stalls) : file_(std::fopen(path.c_str(), "ab")), stalls_(stalls) {}
    ~BenchFile() override { std::fclose(file_); }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    bool write(std::string_view bytes) override {
        if (std::exchange(stalls_, false)) std::this_thread::sleep_for(kStall);
        return std::fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size();
    }
    bool flush() override { return std::fflush(file_) == 0; }

  private:
    std::FILE* file_;
    bool stalls_;
};

class BenchLogSystem final : public LogSystem {
  public:
    explicit BenchLogSystem(std::string path, bool stalls = false) : path_(std::move(path)), stalls_(stalls) {}
    std::unique_ptr<LogFile> openForAppending(const std::string&) override {
        return std::make_unique<BenchFile>(path_, stalls_);
    }
    bool removeFile(const std::string&) override { return false; }
    bool emptyFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}

  private:
    std::string path_;
    bool stalls_;
};

// The contenders: line() logs one line, finish() returns when all are on file.
class OurLog {
  public:
    explicit OurLog(const std::string& folder, bool stalls = false) : system_(folder + "/ours.log", stalls) {
        log_.setRecordEvents(-1);
        log_.endStartUp();
    }
    void line() {
        log_.log("Received subscription variable information for %s (string variable '%s' 0x%08x)", kKey, kText, kType);
    }
    void finish() { log_.closeDebug(); }

  private:
    BenchLogSystem system_;
    const SystemClock clock_;
    TrackingLog log_{system_, clock_};
};

template <std::size_t slots>
class Spdlog {
  public:
    explicit Spdlog(const std::string& folder)
        : pool_(std::make_shared<spdlog::details::thread_pool>(slots, 1)),
          logger_(std::make_shared<spdlog::async_logger>(
              "bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(folder + "/spdlog.log"), pool_,
              spdlog::async_overflow_policy::block)) {
        // The same line: date, time, and the milliseconds since the line before.
        logger_->set_pattern("%m/%d/%Y %H:%M:%S (%o) %v");
    }
    void line() {
        logger_->info("Received subscription variable information for {} (string variable '{}' 0x{:08x})", kKey, kText,
                      kType);
    }
    // The pool's end waits for its queue; the sink's closes the file.
    void finish() {
        pool_.reset();
        logger_.reset();
    }

  private:
    std::shared_ptr<spdlog::details::thread_pool> pool_;
    std::shared_ptr<spdlog::async_logger> logger_;
};

// The whole line, its time known already.
class FormatOnly {
  public:
    explicit FormatOnly(const std::string&) : time_(SystemClock().toLocal(SystemClock().now())) {}
    void line() {
        char text[4096];
        std::snprintf(text, sizeof text,
                      "%d/%02d/%02d %d:%02d:%02d (%05d) Received subscription variable information for %s (string "
                      "variable '%s' 0x%08x)\n",
                      time_.month, time_.day, time_.year, time_.hour, time_.minute, time_.second, 2, kKey, kText,
                      kType);
        keep(text);
    }
    void finish() {}

  private:
    LocalTime time_;
};

// One line every 2 ms, as from a server that tells of something now and then. Seconds for each.
template <typename Log>
std::vector<double> pace(Log& log) {
    std::vector<double> seconds;
    seconds.reserve(kPacedLines);
    auto due = StopClock::now();
    for (int i = 0; i < kPacedLines; ++i) {
        std::this_thread::sleep_until(due += kPace);
        seconds.push_back(measure([&] { log.line(); }));
    }
    return seconds;
}

template <typename Log>
void runPaced(const std::string& name, Log& log) {
    std::vector<double> seconds = pace(log);
    log.finish();
    report(("log.paced50." + name).c_str(), percentile(seconds, 50));
    report(("log.paced99." + name).c_str(), percentile(seconds, 99));
}

template <typename Log>
void runBurst(const std::string& name, const std::string& folder, int threads) {
    Log log(folder);
    std::barrier start(threads + 1);
    std::vector<double> waited(static_cast<std::size_t>(threads));
    std::vector<std::thread> callers;
    for (double& seconds : waited)
        callers.emplace_back([&] {
            start.arrive_and_wait();
            seconds = measure([&] {
                for (int i = 0; i < kBurstLines / threads; ++i)
                    log.line();
            });
        });
    start.arrive_and_wait();
    const auto begin = StopClock::now();
    for (std::thread& caller : callers)
        caller.join();
    log.finish();
    const double whole = secondsSince(begin);
    double sum = 0;
    for (const double seconds : waited)
        sum += seconds;
    const std::string column = std::to_string(threads) + "." + name;
    report(("log.burst" + column).c_str(), sum / kBurstLines);
    report(("log.rate" + column).c_str(), kBurstLines / whole);
}

template <typename Log>
void runAll(const std::string& name, const std::string& folder) {
    Log log(folder);
    runPaced(name, log);
    for (const int threads : {1, 4})
        runBurst<Log>(name, folder, threads);
}

void run(const std::string& folder) {
    runAll<OurLog>("ours", folder);
    runAll<Spdlog<8192>>("spdlog8k", folder);
    runAll<Spdlog<1'000'000>>("spdlog1m", folder);
    FormatOnly format(folder);
    runPaced("format", format);
    OurLog stalled(folder, true);
    runPaced("stalled", stalled);
}

}  // namespace
}  // namespace orvc::bench

int main(int argc, char** argv) {
    orvc::bench::run(argc > 1 ? argv[1] : ".");
}
