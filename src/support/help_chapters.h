// Which chapter of the help file belongs to which window.
#pragma once

#include <span>
#include <string_view>

namespace orvc {

// Topics that are no dialog of their own; every other topic is the id of a dialog's template.
inline constexpr unsigned kMessagesTopic = 0;   // a message box
inline constexpr unsigned kEmailTestTopic = 1;  // the e-mail template's dialog, while it sends a test

struct HelpChapter {
    unsigned topic;
    std::string_view file;  // the same name in every language
};

// One entry for each window of the console.
std::span<const HelpChapter> helpChapters();

// The chapter's file; empty for a topic that has none, which stands for the help file's first page.
std::string_view helpChapter(unsigned topic);

}  // namespace orvc
