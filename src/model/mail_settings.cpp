#include "model/mail_settings.h"

#include <array>
#include <utility>

#include "model/variable_path.h"

namespace orvc {
namespace {

constexpr std::uint32_t kMustBeWhole = 1;
constexpr std::uint32_t kComplete = 1;
constexpr std::uint32_t kNotReceived = 0xFFFFFFFF;

using TextMember = std::optional<std::string> MailSettings::*;

// In reading and writing order.
constexpr std::string_view kPassword = "password";
constexpr std::array<std::pair<std::string_view, TextMember>, 4> kTexts{{
    {"userName", &MailSettings::userName},
    {kPassword, &MailSettings::password},
    {"smtpHost", &MailSettings::smtpHost},
    {"defaultFrom", &MailSettings::defaultFrom},
}};
constexpr std::size_t kMarkerBit = kTexts.size();
constexpr std::string_view kPort = "smtpPort";
constexpr std::string_view kMarker = "completeBits";

}  // namespace

void MailSettings::takeChanges(const MailSettings& before, const MailSettings& after) {
    for (const auto& [name, member] : kTexts)
        if (before.*member != after.*member) this->*member = after.*member;
    if (before.smtpPort != after.smtpPort) smtpPort = after.smtpPort;
    tell();
}

void MailSettings::clear() {
    *this = MailSettings();
    tell();
}

bool MailSettings::updateVariable(const Variable& variable) {
    if (!variable.name.starts_with(kRootPath) || !take(variable.name.substr(kRootPath.size()), variable)) return false;
    tell();
    return true;
}

bool MailSettings::take(std::string_view field, const Variable& variable) {
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        const auto& [name, member] = kTexts[i];
        if (field != name) continue;
        if (variable.text)
            this->*member = std::string(*variable.text);
        else
            (this->*member).reset();
        arrived_[i] = variable.text.has_value();
        return true;
    }
    if (field == kMarker) {
        completeBits = variable.number == kNotReceived ? std::nullopt : std::optional(variable.number);
        arrived_[kMarkerBit] = completeBits.has_value();
    } else if (field == kPort) {
        smtpPort = variable.number;
    } else {
        return false;
    }
    return true;
}

bool MailSettings::isComplete(const Clock& clock, std::int64_t graceDeadline) const {
    if (!arrived_[kMarkerBit]) return false;
    return (*completeBits & kMustBeWhole) == 0 || arrived_.all() || clock.now() > graceDeadline;
}

bool MailSettings::isPassword(std::string_view variableName) {
    return variableName.starts_with(kRootPath) && variableName.substr(kRootPath.size()) == kPassword;
}

VariableValues MailSettings::values() const {
    VariableValues values;
    for (const auto& [name, member] : kTexts)
        values.push_back({joinPath(kRootPath, name), (this->*member).value_or(std::string())});
    values.push_back({joinPath(kRootPath, kPort), smtpPort.value_or(kDefaultSmtpPort)});
    values.push_back({joinPath(kRootPath, kMarker), kComplete});
    return values;
}

}  // namespace orvc
