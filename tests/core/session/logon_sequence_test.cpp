#include "session/logon_sequence.h"

#include <gtest/gtest.h>

#include "fake_log_system.h"
#include "fake_logon_view.h"
#include "fake_server_link.h"
#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

const std::string kAttempt = "stop timers; disable; title #106; KSStart op/pw 0900000a:3010; ";
const std::string kRetry = "title #116; start countdown";
const std::string kIdle = "enable; title #105";

class LogonSequenceTest : public ::testing::Test {
  protected:
    LogonSequenceTest() {
        view_.entry = {"op", "pw", "10.0.0.9", "3010", true, true};
        strings_.texts = {{IDS_LOGON_COUNTDOWN, "wait %d"},
                          {IDS_LOGON_NOT_FOUND, "%d: nobody at %s:%d"},
                          {IDS_LOGON_OTHER_ERROR, "error %d"}};
    }
    // The Logon button, with the library's answer.
    std::string attempt(std::int32_t code, bool isAdministrator = false) {
        link_.startResult = {code, isAdministrator};
        sequence_.attempt();
        return journal_.take();
    }
    std::string tick(int seconds = 1) {
        for (int i = 0; i < seconds; ++i) {
            journal_.take();
            sequence_.onTick();
        }
        return journal_.take();
    }

    Journal journal_;
    JournalLog log_{journal_};
    FakeServerLink link_{journal_};
    FakeLogonView view_{journal_};
    FakeStringTable strings_;
    LogonSequence sequence_{view_, link_, strings_, log_.log,
                            [](const std::string& text) { return text == "10.0.0.9" ? 0x0900000Au : 0; }};
};

TEST_F(LogonSequenceTest, TheFirstFailureIsSilentAndLaterOnesAreToldOrRetriedByTheirCode) {
    EXPECT_EQ(attempt(-30), kAttempt + kRetry);
    const std::pair<std::int32_t, const char*> told[] = {{-31, "#112"}, {-30, "#111"},    {-9, "#109"},
                                                         {-8, "#108"},  {-1, "error -1"}, {7, "error 7"}};
    for (const auto& [code, text] : told) {
        EXPECT_EQ(attempt(code), kAttempt + kIdle + "; error " + text);
        EXPECT_EQ(tick(20), "") << "no countdown";
    }
    const std::pair<std::int32_t, const char*> retried[] = {{-5, "#107"}, {-2, "-2: nobody at 10.0.0.9:3010"}};
    for (const auto& [code, text] : retried)
        EXPECT_EQ(attempt(code), kAttempt + "log: doLogon: " + text + "; " + kRetry);
}

TEST_F(LogonSequenceTest, TheCountdownEndsInAnotherAttempt) {
    attempt(-2);
    EXPECT_EQ(tick(), "title wait 9");
    EXPECT_EQ(tick(8), "title wait 1");
    EXPECT_EQ(tick(),
              "title wait 0; stop timers; " + kAttempt + "log: doLogon: -2: nobody at 10.0.0.9:3010; " + kRetry);
    link_.startResult = {0, true};
    EXPECT_EQ(tick(10), "title wait 0; stop timers; " + kAttempt + "end: logged on");
}

TEST_F(LogonSequenceTest, AUserWithoutAdministratorRightsIsSentBackToThePassword) {
    EXPECT_EQ(attempt(0),
              kAttempt + "error #" + std::to_string(IDS_LOGON_NO_ADMIN) + "; KSStop; " + kIdle + "; select password");
}

TEST_F(LogonSequenceTest, CancelEndsACountdownOrTheDialogButNoAttempt) {
    attempt(-30);
    sequence_.cancel();
    EXPECT_EQ(journal_.take(), "stop timers; " + kIdle);
    EXPECT_EQ(tick(20), "");
    view_.onMessages = [this] {
        sequence_.cancel();
        sequence_.attempt();
        sequence_.onTick();
    };
    EXPECT_EQ(attempt(-5), kAttempt + "log: doLogon: #107; " + kRetry) << "what is clicked meanwhile does nothing";
    sequence_.cancel();
    journal_.take();
    view_.cancels = false;
    sequence_.cancel();
    EXPECT_EQ(journal_.take(), "") << "the operator thinks better of it";
    view_.cancels = true;
    sequence_.cancel();
    EXPECT_EQ(journal_.take(), "end: cancelled");
}

}  // namespace
}  // namespace orvc
