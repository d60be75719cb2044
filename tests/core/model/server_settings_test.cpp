#include "model/server_settings.h"

#include <gtest/gtest.h>

#include "fake_clock.h"
#include "fake_server_link.h"

namespace orvc {
namespace {

FakeClock at(std::int64_t seconds) {
    FakeClock clock;
    clock.seconds = seconds;
    return clock;
}

TEST(ServerSettings, OnlyTheSixNamesAreClaimedAndWrittenTheMarkerLast) {
    ServerSettings settings;
    for (const char* name :
         {"\\ORVS\\", "\\ORVS\\username", "\\ORVS\\userName\\", "ORVS\\userName", "\\ORVS\\CompleteBits", ""})
        EXPECT_FALSE(settings.updateVariable({name, 0, "x", 1})) << name;
    for (const char* name : {"userName", "password", "smtpHost", "smtpPort", "completeBits"})
        EXPECT_TRUE(settings.updateVariable({std::string("\\ORVS\\").append(name), 0, name, 465})) << name;
    Journal journal;
    FakeServerLink link(journal);
    settings.write(link);
    EXPECT_EQ(journal.take(),
              "create \\ORVS\\; \\ORVS\\userName='userName'; \\ORVS\\password='password'; \\ORVS\\smtpHost='smtpHost'; "
              "\\ORVS\\defaultFrom=''; \\ORVS\\smtpPort=465; \\ORVS\\completeBits=1");
}

TEST(ServerSettings, CompletenessNeedsTheMarkerAndAllTextsOrTheEndOfTheGrace) {
    ServerSettings settings;
    EXPECT_FALSE(settings.isComplete(at(1'000), 5)) << "no marker";
    for (const std::uint32_t bits : {0u, 0xFFFFFFFEu}) {
        settings.completeBits = bits;
        EXPECT_TRUE(settings.isComplete(at(0), 5));
    }
    settings.completeBits = 1;
    for (const auto member : {&ServerSettings::userName, &ServerSettings::password, &ServerSettings::smtpHost,
                              &ServerSettings::defaultFrom}) {
        EXPECT_FALSE(settings.isComplete(at(5), 5));
        EXPECT_TRUE(settings.isComplete(at(6), 5));
        settings.*member = "";
    }
    EXPECT_TRUE(settings.isComplete(at(5), 5)) << "an empty text is there";
}

}  // namespace
}  // namespace orvc
