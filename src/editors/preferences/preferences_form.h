// The rules of the preferences: which port is one, what has changed, and what is taken over.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/mail_settings.h"
#include "session/change.h"
#include "support/string_table.h"

namespace orvc {

// The number that a text begins with, blanks before it skipped, held within 32 bits; nothing when the text is anything
// but a number.
std::optional<std::int32_t> parseInteger(std::string_view text);

// Purpose: what the Email page holds. The dialog copies the texts to and from its controls.
// Thread: user-interface thread.
class EmailForm {
  public:
    static constexpr std::int32_t kLowestPort = 1;
    static constexpr std::int32_t kHighestPort = 32'000;

    // An absent text shows empty, a port that the server never sent shows the one of MailSettings.
    explicit EmailForm(const MailSettings& settings);

    std::string userName;
    std::string password;
    std::string smtpHost;
    std::string defaultFrom;
    std::string portText;

    // Takes the port from its text. Returns the message to show when it is out of range, in which case it is taken all
    // the same, or when the text is no number, in which case the port stays what it was.
    std::optional<std::string> takePort(const StringTable& strings);
    std::int32_t port() const { return port_; }

    // Whether anything differs from what the form began with.
    bool isChanged() const;
    // What OK wants changed: the four texts and the port, against what the form began with.
    MailChange change() const;

  private:
    void applyTo(MailSettings& settings) const;

    MailSettings opened_;
    std::int32_t port_;
};

}  // namespace orvc
