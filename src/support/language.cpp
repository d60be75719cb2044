#include "support/language.h"

#include "support/text.h"

namespace orvc {

LanguageCandidates languageCandidates(std::uint16_t userLanguage, std::uint16_t systemLanguage) {
    constexpr std::uint16_t kLowByte = 255;
    constexpr std::uint16_t kPrimaryLanguage = 0x3FF;
    constexpr std::uint16_t kEnglish = 0x09;
    const auto lowByte = [](std::uint16_t language) { return static_cast<std::uint16_t>(language & kLowByte); };
    if ((userLanguage & kPrimaryLanguage) == kEnglish) return {userLanguage, lowByte(userLanguage)};
    return {userLanguage, lowByte(userLanguage), systemLanguage, lowByte(systemLanguage)};
}

std::string languageLibraryName(std::uint16_t language) {
    return formatText("ORVSConfig%04x.dll", language);
}

std::optional<std::uint16_t> chooseLanguage(const LanguageCandidates& candidates,
                                            const std::function<bool(std::uint16_t)>& tryLoad) {
    for (const std::uint16_t candidate : candidates)
        if (tryLoad(candidate)) return candidate;
    return std::nullopt;
}

HelpFile chooseHelpFile(const FileSystem& files, const std::string& installFolder,
                        const LanguageCandidates& candidates) {
    HelpFile chosen;
    chosen.language = chooseLanguage(candidates, [&](std::uint16_t language) {
        chosen.path = formatText("%s\\HelpFile%04x.chm", installFolder.c_str(), language);
        return files.canRead(chosen.path);
    });
    if (!chosen.language) chosen.path = installFolder + "\\HelpFile.chm";
    return chosen;
}

}  // namespace orvc
