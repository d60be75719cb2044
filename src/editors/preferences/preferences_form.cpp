#include "editors/preferences/preferences_form.h"

#include <algorithm>
#include <limits>

#include "resources/resource.h"
#include "support/text.h"

namespace orvc {

std::optional<std::int32_t> parseInteger(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    while (text.ends_with(' ') || text.ends_with('\t'))
        text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    std::int64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        number = std::min<std::int64_t>(10 * number + (c - '0'), most + 1);
    }
    return static_cast<std::int32_t>(std::clamp(isNegative ? -number : number, least, most));
}

EmailForm::EmailForm(const MailSettings& settings)
    : userName(settings.userName.value_or("")),
      password(settings.password.value_or("")),
      smtpHost(settings.smtpHost.value_or("")),
      defaultFrom(settings.defaultFrom.value_or("")),
      opened_(settings),
      port_(static_cast<std::int32_t>(settings.smtpPort.value_or(MailSettings::kDefaultSmtpPort))) {
    portText = std::to_string(port_);
    applyTo(opened_);
}

std::optional<std::string> EmailForm::takePort(const StringTable& strings) {
    const auto number = parseInteger(portText);
    if (!number) return strings.text(IDS_PORT_NO_NUMBER);
    port_ = *number;
    if (port_ >= kLowestPort && port_ <= kHighestPort) return std::nullopt;
    return fillIn(strings.text(IDS_PORT_RANGE), {static_cast<long>(kLowestPort), static_cast<long>(kHighestPort)});
}

bool EmailForm::isChanged() const {
    return userName != opened_.userName || password != opened_.password || smtpHost != opened_.smtpHost ||
           defaultFrom != opened_.defaultFrom || static_cast<std::uint32_t>(port_) != opened_.smtpPort;
}

MailChange EmailForm::change() const {
    MailChange change{opened_, opened_};
    applyTo(change.after);
    return change;
}

void EmailForm::applyTo(MailSettings& settings) const {
    settings.userName = userName;
    settings.password = password;
    settings.smtpHost = smtpHost;
    settings.defaultFrom = defaultFrom;
    settings.smtpPort = static_cast<std::uint32_t>(port_);
}

}  // namespace orvc
