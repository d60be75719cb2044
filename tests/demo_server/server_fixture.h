// A server on a system whose time stands still until a test moves it, and its events as lines of text.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "demo_server/core/built_in_building.h"
#include "demo_server/core/server.h"

namespace orvc::demo {

class FakeHost final : public Host {
  public:
    bool claimUser(const std::string& name) override {
        if (userIsElsewhere) return false;
        claimed = name;
        return true;
    }
    void releaseUser() override { claimed.clear(); }
    Millis ticks() const override { return now; }
    std::uint32_t utcSeconds() const override { return static_cast<std::uint32_t>(1'700'000'000 + now / 1000); }

    Millis now = 10'000;
    bool userIsElsewhere = false;
    std::string claimed;
};

// One event as a line: its code, and what a console would read from its data.
std::string describeEvent(std::uint32_t code, std::int32_t number, const void* connection, const void* data);

class ServerFixture : public ::testing::Test {
  protected:
    // Makes the server anew, on `installation`.
    Server& makeServer(Installation installation, std::string_view options = "fire=0");
    Server& server() { return *server_; }

    // Logs on as admin, or as somebody else; "127.0.0.1" in network byte order is the usual address.
    std::int32_t logOn(std::string_view name = "admin", std::string_view password = "admin",
                       std::array<std::uint8_t, 4> address = {127, 0, 0, 1}, std::uint16_t family = 2);
    // Logs on and throws away what is sent then.
    void logOnQuietly();

    // Everything that is due now, as lines.
    std::vector<std::string> drain();
    // Lets time pass step by step and collects what is sent meanwhile.
    std::vector<std::string> pass(Millis millis, Millis step = 10);

    FakeHost host_;
    bool isAdmin_ = false;

  private:
    std::unique_ptr<Server> server_;
};

// Two users, two devices, one group of both, one message, one queue, and a few variables.
Installation makeSmallInstallation();

}  // namespace orvc::demo
