// The rules of the preferences: which ports are valid, and what has changed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/mail_settings.h"
#include "session/change.h"
#include "support/string_table.h"

namespace orvc {

// The whole number that `text` is, limited to 32 bits. It may have a sign, and blanks around it. Empty if the text is
// not a whole number.
std::optional<std::int32_t> parseInteger(std::string_view text);

// Purpose: holds the Email page's settings. The dialog copies the texts to and from its controls.
// Thread: user-interface thread.
class EmailForm {
  public:
    static constexpr std::int32_t kLowestPort = 1;
    static constexpr std::int32_t kHighestPort = 32'000;

    // A text that the server never sent is empty; a port that it never sent is the default of MailSettings.
    explicit EmailForm(const MailSettings& settings);

    std::string userName;
    std::string password;
    std::string smtpHost;
    std::string defaultFrom;
    std::string portText;

    // Reads the port from its text. Out of range: uses it, and returns a message. Not a number: keeps the port, and
    // returns a message.
    std::optional<std::string> takePort(const StringTable& strings);
    std::int32_t port() const { return port_; }

    // Whether anything differs from the settings that the form was made with.
    bool isChanged() const;
    // What OK changes: the four texts and the port, before and after.
    MailChange change() const;

  private:
    void applyTo(MailSettings& settings) const;

    MailSettings opened_;
    std::int32_t port_;
};

}  // namespace orvc
