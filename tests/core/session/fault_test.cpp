// A whole session in which every allocation, post, timer and log call fails in turn.
#include <gtest/gtest.h>

#include <atomic>
#include <optional>

#include "editors/event/event_entry.h"
#include "fake_string_table.h"
#include "fault_console.h"
#include "refused_threads.h"
#include "resources/resource.h"

namespace orvc {
namespace {

// A log system whose calls fail by plan.
class FaultyLogSystem final : public LogSystem {
  public:
    std::unique_ptr<LogFile> openForAppending(const std::string&) override {
        return calls.fails() ? nullptr : std::make_unique<File>(*this);
    }
    bool removeFile(const std::string&) override { return !calls.fails(); }
    bool emptyFile(const std::string&) override { return false; }
    void writeToDebugger(const char*) override {}

    FaultPlan calls;
    std::atomic<std::size_t> written = 0;  // bytes

  private:
    struct File final : LogFile {
        explicit File(FaultyLogSystem& owner) : system(owner) {}
        bool write(std::string_view bytes) override {
            if (system.calls.fails()) return false;
            system.written += bytes.size();
            return true;
        }
        bool flush() override { return !system.calls.fails(); }
        FaultyLogSystem& system;
    };
};

const std::string kWhole =
    "11 variables, the name since the reload, the name since the reload, All Days, All Day, the name since the reload, "
    "Nurses of 1, Chime, 1 with problems";

class FaultTest : public testing::Test {
  protected:
    // Opens an Event in the editor, renames it and saves it, as the main window does.
    static void editAnEvent(FaultConsole& console) {
        console.guarded([&] {
            Session& session = console.session();
            const EventRecord* const event = session.events().find("{the first Event's key}");
            if (event == nullptr) return;
            FakeStringTable strings;
            EventForm form(strings, session.directory(), session.schedules());
            form.load(*event);
            form.chooseResponse(form.responseIndex());
            form.setSpokenText("a text that needs memory to be kept");
            session.apply({changeFrom(form, *event, event->key)});
        });
    }
    // What the console holds after the reload, and in the end everything once more.
    static std::string workThrough(FaultConsole& console) {
        console.run();
        editAnEvent(console);
        console.announceReload();
        console.run();
        const Exempt exempt;
        const std::string reloaded = console.contents();
        console.stopServer();
        console.run();
        return reloaded;
    }
    // After a passing fault the console must have all again by itself, after a lasting one when the next logon comes.
    void expectRecovery(FaultPlan& plan, FaultConsole& console, bool lasting) {
        const std::string reloaded = workThrough(console);
        if (lasting) {
            plan.lift();
            console.run();
            console.stopServer();
            console.run();
        }
        const Exempt exempt;
        if (!lasting) {
            EXPECT_EQ(reloaded, kWhole);
        }
        EXPECT_EQ(console.contents(), kWhole);
        console.session().logoff();
        console.run();
        EXPECT_TRUE(console.session().isConnected());
    }
    static void shutDown(FaultConsole& console) {
        while (console.open)
            console.guarded([&] { console.session().doShutdown(); });
    }

    FaultyLogSystem system_;
    FaultPlan posts_;
    FaultPlan timers_;
};

TEST_F(FaultTest, AllocationsThatFailCostNoOrderAndLeaveNothingBehind) {
    FaultPlan& plan = allocationFaults();
    const auto runOnce = [&](bool lasting) {
        std::optional<FaultConsole> console;
        {
            const Exempt exempt;  // a program that cannot start says so and ends
            console.emplace(system_, posts_, timers_);
        }
        expectRecovery(plan, *console, lasting);
        shutDown(*console);
    };
    runOnce(false);  // what a library keeps for good is no leak
    forEachFault(plan, [&](bool lasting) {
        const std::size_t before = allocatedBytes();
        runOnce(lasting);
        const Exempt exempt;
        EXPECT_EQ(allocatedBytes(), before) << "bytes leaked";
    });
}

TEST_F(FaultTest, AShutdownNeedsNoMemory) {
    FaultConsole console(system_, posts_, timers_);
    console.run();
    allocationFaults().arm(1, true);
    console.guarded([&] { console.session().doShutdown(); });
    allocationFaults().lift();
    EXPECT_FALSE(console.open);
    EXPECT_EQ(console.session().events().size() + console.session().store().size(), 0u);
}

TEST_F(FaultTest, PostsTimersAndLogCallsThatFailCostNothing) {
    for (FaultPlan* const plan : {&posts_, &timers_}) {
        forEachFault(*plan, [&](bool lasting) {
            FaultConsole console(system_, posts_, timers_);
            // A window without timers stands still: those that were refused must be asked for again.
            expectRecovery(*plan, console, lasting);
            plan->lift();
            shutDown(console);
        });
    }
    forEachFault(system_.calls, [&](bool) {
        FaultConsole console(system_, posts_, timers_);
        workThrough(console);
        console.log.clear();
        EXPECT_EQ(console.contents(), kWhole);
        shutDown(console);
    });
}

TEST_F(FaultTest, LinesDoNotPileUpAfterAFailedWrite) {
    FaultConsole console(system_, posts_, timers_);
    console.run();
    system_.calls.arm(1, true);
    // The first lines make the writer fail; it looks for them ten times a second.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::size_t grown = 1;
    while (grown != 0 && std::chrono::steady_clock::now() < deadline) {
        console.log.log("a line");
        const std::size_t before = allocatedBytes();
        for (int i = 0; i < 10'000; ++i)
            console.log.log("a line that is kept nowhere");
        grown = allocatedBytes() - before;
    }
    EXPECT_EQ(grown, 0u) << "bytes";
    system_.calls.lift();
    shutDown(console);
}

TEST_F(FaultTest, AWriterThatDoesNotStartCostsTheLogItsLinesOnly) {
    forEachFault(threadFaults(), [&](bool) {
        FaultConsole console(system_, posts_, timers_);
        workThrough(console);
        console.log.clear();
        EXPECT_EQ(console.contents(), kWhole);
        threadFaults().lift();
        console.log.clear();  // opens the file anew
        const std::size_t before = system_.written;
        console.log.log("a line");
        console.log.closeDebug();
        EXPECT_GT(system_.written, before);
        shutDown(console);
    });
}

}  // namespace
}  // namespace orvc
