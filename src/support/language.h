// Which language library and which help file the console uses.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/folders.h"

namespace orvc {

// Windows language identifiers, in the order in which they are tried.
using LanguageCandidates = std::vector<std::uint16_t>;

// The user's default, its low byte, the system's default, its low byte. The mask is the whole low byte, not the ten
// bits of a primary language: libraries are named after it. For a user whose language is English the system's language
// is left out: English is the program's own.
LanguageCandidates languageCandidates(std::uint16_t userLanguage, std::uint16_t systemLanguage);

// File name of a language library: "ORVSConfig0407.dll".
std::string languageLibraryName(std::uint16_t language);

// The first candidate for which `tryLoad` returns true; empty when none does.
std::optional<std::uint16_t> chooseLanguage(const LanguageCandidates& candidates,
                                            const std::function<bool(std::uint16_t)>& tryLoad);

// The help file in use. `language` is empty when it is the one without a language in its name.
struct HelpFile {
    std::string path;
    std::optional<std::uint16_t> language;
};

// The first help file of the candidates that can be read in `installFolder`, else "HelpFile.chm" there, which need not
// exist.
HelpFile chooseHelpFile(const FileSystem& files, const std::string& installFolder,
                        const LanguageCandidates& candidates);

}  // namespace orvc
