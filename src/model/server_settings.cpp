#include "model/server_settings.h"

#include <array>
#include <utility>

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::uint32_t kMustBeWhole = 1;
constexpr std::uint32_t kComplete = 1;
constexpr std::uint32_t kNotReceived = 0xFFFFFFFF;

using TextMember = std::optional<std::string> ServerSettings::*;

// In reading and writing order.
constexpr std::string_view kPassword = "password";
constexpr std::array<std::pair<std::string_view, TextMember>, 4> kTexts{{
    {"userName", &ServerSettings::userName},
    {kPassword, &ServerSettings::password},
    {"smtpHost", &ServerSettings::smtpHost},
    {"defaultFrom", &ServerSettings::defaultFrom},
}};
constexpr std::string_view kPort = "smtpPort";
constexpr std::string_view kMarker = "completeBits";

}  // namespace

bool ServerSettings::updateVariable(const Variable& variable) {
    if (!variable.name.starts_with(kRootPath)) return false;
    const std::string_view field = variable.name.substr(kRootPath.size());
    for (const auto& [name, member] : kTexts) {
        if (field != name) continue;
        if (variable.text)
            this->*member = std::string(*variable.text);
        else
            (this->*member).reset();
        return true;
    }
    if (field == kMarker)
        completeBits = variable.number == kNotReceived ? std::nullopt : std::optional(variable.number);
    else if (field == kPort)
        smtpPort = variable.number;
    else
        return false;
    return true;
}

bool ServerSettings::isComplete(const Clock& clock, std::int64_t graceDeadline) const {
    if (!completeBits) return false;
    if ((*completeBits & kMustBeWhole) == 0) return true;
    for (const auto& text : kTexts)
        if (!(this->*text.second)) return clock.now() > graceDeadline;
    return true;
}

bool ServerSettings::isPassword(std::string_view variableName) {
    return variableName.starts_with(kRootPath) && variableName.substr(kRootPath.size()) == kPassword;
}

void ServerSettings::write(ServerLink& link) const {
    link.createKey(std::string(kRootPath), true);
    for (const auto& [name, member] : kTexts)
        link.setText(joinPath(kRootPath, name), (this->*member).value_or(std::string()));
    link.setDword(joinPath(kRootPath, kPort), smtpPort.value_or(kDefaultSmtpPort));
    link.setDword(joinPath(kRootPath, kMarker), kComplete);
}

}  // namespace orvc
