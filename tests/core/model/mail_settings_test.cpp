#include "model/mail_settings.h"

#include <gtest/gtest.h>

#include "fake_clock.h"

namespace orvc {
namespace {

FakeClock at(std::int64_t seconds) {
    FakeClock clock;
    clock.seconds = seconds;
    return clock;
}

TEST(MailSettings, OnlyTheSixNamesAreClaimedAndWrittenTheMarkerLast) {
    MailSettings settings;
    for (const char* name :
         {"\\ORVS\\", "\\ORVS\\username", "\\ORVS\\userName\\", "ORVS\\userName", "\\ORVS\\CompleteBits", ""})
        EXPECT_FALSE(settings.updateVariable({name, 0, "x", 1})) << name;
    for (const char* name : {"userName", "password", "smtpHost", "smtpPort", "completeBits"})
        EXPECT_TRUE(settings.updateVariable({std::string("\\ORVS\\").append(name), 0, name, 465})) << name;
    const VariableValues expected{{"\\ORVS\\userName", "userName"}, {"\\ORVS\\password", "password"},
                                  {"\\ORVS\\smtpHost", "smtpHost"}, {"\\ORVS\\defaultFrom", ""},
                                  {"\\ORVS\\smtpPort", 465u},       {"\\ORVS\\completeBits", 1u}};
    EXPECT_EQ(settings.values(), expected);
}

TEST(MailSettings, CompletenessNeedsTheMarkerAndAllTextsOrTheEndOfTheGrace) {
    MailSettings settings;
    const auto receive = [&](const char* name, std::uint32_t number) {
        settings.updateVariable({std::string("\\ORVS\\").append(name), 0, "", number});
    };
    EXPECT_FALSE(settings.isComplete(at(1'000), 5)) << "no marker";
    for (const std::uint32_t bits : {0u, 0xFFFFFFFEu}) {
        receive("completeBits", bits);
        EXPECT_TRUE(settings.isComplete(at(0), 5));
    }
    // Then the same for values that come again, as after a reload.
    for (const bool again : {false, true}) {
        if (again) settings.awaitAgain();
        EXPECT_EQ(settings.userName.has_value(), again) << "the values stay";
        if (again) {
            EXPECT_FALSE(settings.isComplete(at(1'000), 5)) << "the marker is awaited again";
        }
        receive("completeBits", 1);
        for (const char* name : {"userName", "password", "smtpHost", "defaultFrom"}) {
            EXPECT_FALSE(settings.isComplete(at(5), 5));
            EXPECT_TRUE(settings.isComplete(at(6), 5));
            receive(name, 0);
        }
        EXPECT_TRUE(settings.isComplete(at(5), 5)) << "an empty text is there";
    }
}

}  // namespace
}  // namespace orvc
