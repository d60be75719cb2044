#include "support/tracking_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "fake_log_system.h"

namespace orvc {
namespace {

using ::testing::ElementsAre;

const std::string kPath = "C:\\Data\\ORVCTracking.txt";
const std::string kRootPath = "c:\\ORVCTracking.txt";
const std::string kBanner = "** Starting write before console logon **\n";
const std::string kStamp = "11/21/2026 9:05:00 ";
const std::string kSignalled = "closeDebug(): Signalled debug thread to quit\n";
const std::string kStarting = "Starting debugThread\n";
const std::string kEnding = "Ending debugThread\n";

class TrackingLogTest : public ::testing::Test {
  protected:
    TrackingLogTest() { log_.setSupportFolder("C:\\Data"); }
    // The console as it runs with recording on: start-up is over and a file is open.
    void startRecording() {
        log_.setRecordEvents(-1);
        log_.endStartUp();
    }
    std::string closedFile(const std::string& path = kPath) {
        log_.closeDebug();
        return system_.file(path);
    }

    FakeLogSystem system_;
    FakeClock clock_;
    TrackingLog log_{system_, clock_};
};

TEST_F(TrackingLogTest, LinesCarryTheTimeAndTheMillisecondsSinceThePreviousCountedOne) {
    startRecording();
    clock_.ticks += 0x1C;  // over the counter's wrap-around
    log_.log("\rfirst %d%%\r\n", 1);
    log_.logUncounted("between %s", "lines");
    clock_.seconds += 15 * 3600 + 9;
    clock_.ticks += 123456;
    log_.log("%s", "");
    EXPECT_EQ(log_.queueRaw("raw\r\r\n"), 1);
    EXPECT_EQ(closedFile(), kBanner + kStamp + "(00028) first 1%\n\n" + kStamp + "between lines\n" +
                                "11/22/2026 0:05:09 (123456) \nraw\n");
}

TEST_F(TrackingLogTest, AMessageLongerThanItsBufferIsCut) {
    startRecording();
    const std::string text(100'000, 'x');
    log_.log("%s", text.c_str());
    log_.logUncounted("%s", text.c_str());
    log_.queueRaw(text);
    EXPECT_EQ(closedFile(),
              kBanner + kStamp + "(00000) " + text.substr(0, 4095) + "\n" + kStamp + text.substr(0, 255) + "\n" + text);
}

TEST_F(TrackingLogTest, StartUpIsAlwaysRecordedAndLaterOnlyWhatTheSettingLetsThrough) {
    log_.log("before any file");
    log_.OpenCloseDebugFile(false, true);
    EXPECT_TRUE(system_.waitForDebuggerText(kStarting));
    log_.log("start-up");
    log_.endStartUp();
    EXPECT_FALSE(log_.isTakingLines());
    log_.log("dropped");
    log_.logUncounted("uncounted");
    EXPECT_EQ(log_.queueRaw("raw"), 0);
    EXPECT_THAT(system_.takeDebuggerTexts(), ElementsAre(kStamp + "(00000) before any file\n", kStarting, kSignalled,
                                                         kEnding, kStamp + "uncounted\n", "raw"));
    log_.OpenCloseDebugFile(false, true);
    log_.log("dropped, though a file is open");
    log_.logUncounted("uncounted");
    EXPECT_EQ(closedFile(), kBanner + kStamp + "(00000) start-up\n" + kBanner + kStamp + "uncounted\n");
}

TEST_F(TrackingLogTest, TheFileStaysOpenUntilTheEndOfStartUpWhateverTheSetting) {
    log_.OpenCloseDebugFile(false, true);
    log_.OpenCloseDebugFile(false, false);  // recording is off
    log_.log("start-up");
    EXPECT_EQ(log_.queueRaw("raw\n"), 1);
    log_.endStartUp();
    EXPECT_EQ(log_.queueRaw("raw"), 0);
    EXPECT_EQ(system_.file(kPath), kBanner + kStamp + "(00000) start-up\nraw\n");
}

TEST_F(TrackingLogTest, LinesThatComeWhileTheFileIsOpenedAnewReachIt) {
    startRecording();
    system_.onOpen = [this] { log_.log("in between"); };
    log_.OpenCloseDebugFile(false, false);
    EXPECT_EQ(closedFile(), kBanner + kStamp + "(00000) in between\n" + kBanner);
    // Without another file they go where lines go without a file.
    startRecording();
    system_.unopenable = {kPath, kRootPath};
    system_.takeDebuggerTexts();
    log_.OpenCloseDebugFile(false, false);
    EXPECT_THAT(system_.takeDebuggerTexts(), ::testing::Contains(::testing::HasSubstr("in between\n")));
    EXPECT_EQ(log_.queueRaw("raw"), 0);
}

TEST_F(TrackingLogTest, AFileThatAnotherProgramHasOpenIsEmptied) {
    startRecording();
    closedFile();
    system_.inUse = true;
    log_.setRecordEvents(0);
    EXPECT_TRUE(log_.clear());
    EXPECT_EQ(system_.file(kPath), "");
    system_.unopenable = {kPath};  // nor can it be emptied
    EXPECT_FALSE(log_.clear());
}

TEST_F(TrackingLogTest, EachOpeningAppendsABannerAndClearingStartsAFreshFile) {
    startRecording();
    log_.setUser("50% %s");
    log_.OpenCloseDebugFile(false, false);
    log_.OpenCloseDebugFile(true, true);
    EXPECT_EQ(system_.file(kPath), kBanner + "** Starting write for console user '50% %s' **\n");
    log_.setUser({});
    log_.setRecordEvents(0);
    log_.clear();
    EXPECT_EQ(system_.file(kPath), "(no such file)");
}

TEST_F(TrackingLogTest, TheRootOfDriveCIsTheFallBackAndIsNeverCleared) {
    system_.unopenable = {kPath};
    startRecording();
    log_.clear();
    const std::string opened =
        kBanner + kStamp + "(00000) OpenCloseDebugFile: Could not write to special folder, writing to ROOT\n";
    EXPECT_EQ(closedFile(kRootPath), opened + opened);
}

TEST_F(TrackingLogTest, AFailedWriteOrFlushEndsTheWriterUntilTheFileIsOpenedAgain) {
    for (std::atomic<bool>* const failure : {&system_.writesFail, &system_.flushesFail}) {
        *failure = true;
        startRecording();
        EXPECT_TRUE(system_.waitForDebuggerText(kEnding));
        EXPECT_THAT(
            system_.takeDebuggerTexts(),
            ElementsAre(kStarting, "debugThread: Write to debug tracking file failed - exitting thread\n", kEnding));
        EXPECT_EQ(log_.queueRaw("piles up\n"), 1);
        *failure = false;
        log_.OpenCloseDebugFile(false, false);
        EXPECT_TRUE(system_.waitForDebuggerText(kStarting));
        EXPECT_TRUE(closedFile().ends_with(kBanner));
        EXPECT_EQ(system_.file(kPath).find("piles up"), std::string::npos);
        EXPECT_THAT(system_.takeDebuggerTexts(), ElementsAre(kStarting, kSignalled, kEnding)) << "told to quit once";
    }
}

TEST_F(TrackingLogTest, AFileIsFlushedWheneverTheQueueRunsDry) {
    startRecording();
    EXPECT_TRUE(system_.waitForFlush(1));
    log_.log("one more");
    EXPECT_TRUE(system_.waitForFlush(2));
    EXPECT_EQ(system_.file(kPath), kBanner + kStamp + "(00000) one more\n");
}

TEST_F(TrackingLogTest, LinesOfManyThreadsAreAllThereEachThreadsInItsOrder) {
    constexpr int kLines = 20'000;
    std::array<int, 4> next{};
    startRecording();
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < next.size(); ++thread)
        threads.emplace_back([this, thread] {
            for (int line = 0; line < kLines; ++line)
                log_.log("%zu %d", thread, line);
        });
    for (std::thread& thread : threads)
        thread.join();
    std::istringstream file(closedFile());
    std::string line;
    std::getline(file, line);  // the banner
    while (std::getline(file, line)) {
        std::istringstream message(line.substr(line.find(") ") + 2));
        std::size_t thread = 0;
        int number = -1;
        message >> thread >> number;
        ASSERT_EQ(number, next.at(thread)++) << line;
    }
    EXPECT_THAT(next, ::testing::Each(kLines));
}

TEST_F(TrackingLogTest, FilesMayBeOpenedAndClosedWhileOthersLog) {
    startRecording();
    std::atomic<bool> stop = false;
    std::thread other([&] {
        while (!stop)
            log_.log("busy");
    });
    for (int i = 0; i < 50; ++i)
        log_.OpenCloseDebugFile(i % 2 != 0, false);
    stop = true;
    other.join();
    std::istringstream file(closedFile());
    int banners = 0;
    for (std::string line; std::getline(file, line);)
        banners += line + "\n" == kBanner;
    EXPECT_EQ(banners, 26) << "every opening is marked in the file";
}

}  // namespace
}  // namespace orvc
