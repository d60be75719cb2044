// The server's e-mail settings, and whether they are all there.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/variable_store.h"
#include "model/variable_value.h"
#include "support/clock.h"

namespace orvc {

// Thread: user-interface thread. Registered behind the Events and the Schedules: claims its six names exactly.
class MailSettings final : public VariableOwner {
  public:
    // The port while the server has sent none.
    static constexpr std::uint32_t kDefaultSmtpPort = 25;

    bool updateVariable(const Variable& variable) override;

    // Complete when the marker has arrived and, if its bit 0 is set, all four texts too; with a text missing, once the
    // time is past `graceDeadline` (seconds since 1970 UTC). Asked for each variable that arrives, so the clock is read
    // only where it decides.
    bool isComplete(const Clock& clock, std::int64_t graceDeadline) const;

    // All values in writing order, the marker last.
    VariableValues values() const;

    // A reload begins: only values that come again make the settings complete. The values stay.
    void awaitAgain() { arrived_.reset(); }

    void clear() { *this = MailSettings(); }

    // Whether the variable of that name holds the password of the mail account, which no log may show.
    static bool isPassword(std::string_view variableName);

    std::optional<std::string> userName;
    std::optional<std::string> password;
    std::optional<std::string> smtpHost;
    std::optional<std::string> defaultFrom;
    std::optional<std::uint32_t> smtpPort;
    std::optional<std::uint32_t> completeBits;  // absent until received

  private:
    std::bitset<5> arrived_;  // the four texts in reading order, and the marker
};

}  // namespace orvc
