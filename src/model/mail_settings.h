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

// Who follows the e-mail settings. Called on the user-interface thread, after the change.
class MailSettingsObserver {
  public:
    virtual ~MailSettingsObserver() = default;
    virtual void mailSettingsChanged() = 0;
};

// Thread: user-interface thread. Registered behind the Events and the Schedules: claims its six names exactly.
class MailSettings final : public VariableOwner {
  public:
    // The port while the server has sent none.
    static constexpr std::uint32_t kDefaultSmtpPort = 25;

    // At most one, which is no part of a copy; it outlives the settings or is taken away with null.
    void observe(MailSettingsObserver* observer) { observer_.pointer = observer; }

    bool updateVariable(const Variable& variable) override;

    // Takes each value over in which `after` differs from `before`.
    void takeChanges(const MailSettings& before, const MailSettings& after);

    // Whether the server can send e-mail: it has the name of a mail server. An account is not needed everywhere, and a
    // port that is missing has a default.
    bool hasMailServer() const { return smtpHost && !smtpHost->empty(); }

    // Complete when the marker has arrived and, if its bit 0 is set, all four texts too; with a text missing, once the
    // time is past `graceDeadline` (seconds since 1970 UTC). Asked for each variable that arrives, so the clock is read
    // only where it decides.
    bool isComplete(const Clock& clock, std::int64_t graceDeadline) const;

    // All values in writing order, the marker last.
    VariableValues values() const;

    // A reload begins: only values that come again make the settings complete. The values stay.
    void awaitAgain() { arrived_.reset(); }

    void clear();

    // Whether the variable of that name holds the password of the mail account, which no log may show.
    static bool isPassword(std::string_view variableName);

    std::optional<std::string> userName;
    std::optional<std::string> password;
    std::optional<std::string> smtpHost;
    std::optional<std::string> defaultFrom;
    std::optional<std::uint32_t> smtpPort;
    std::optional<std::uint32_t> completeBits;  // absent until received

  private:
    // Stays with its settings: a copy has none, and assigned values leave it.
    class Observer {
      public:
        Observer() = default;
        ~Observer() = default;
        Observer(const Observer&) noexcept {}
        Observer(Observer&&) noexcept {}
        Observer& operator=(const Observer&) noexcept { return *this; }  // NOLINT(bugprone-unhandled-self-assignment)
        Observer& operator=(Observer&&) noexcept { return *this; }
        MailSettingsObserver* pointer = nullptr;
    };

    bool take(std::string_view field, const Variable& variable);
    void tell() const {
        if (observer_.pointer != nullptr) observer_.pointer->mailSettingsChanged();
    }

    Observer observer_;
    std::bitset<5> arrived_;  // the four texts in reading order, and the marker
};

}  // namespace orvc
