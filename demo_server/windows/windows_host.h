// The system as the demo server's core sees it.
#pragma once

#include "demo_server/core/server.h"
#include "demo_server/windows/owned_handle.h"

namespace orvc::demo {

// A user's name is taken for the whole machine, across processes: by a named mutex that exists as long as its taker
// holds it, and goes with the taker's process at the latest.
class WindowsHost final : public Host {
  public:
    bool claimUser(const std::string& name) override;
    void releaseUser() override { claimed_.reset(); }
    Millis ticks() const override;
    std::uint32_t utcSeconds() const override;

  private:
    OwnedHandle claimed_;
};

}  // namespace orvc::demo
