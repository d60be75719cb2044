#include "support/help_chapters.h"

#include <algorithm>
#include <array>

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr std::array<HelpChapter, 17> kChapters{{
    {kMessagesTopic, "messages.htm"},
    {kEmailTestTopic, "email-test.htm"},
    {IDD_ABOUT, "about.htm"},
    {IDD_MAIN, "main-window.htm"},
    {IDD_LOGON, "logon.htm"},
    {IDD_PLEASE_WAIT, "please-wait.htm"},
    {IDD_ASSIGN_SCHEDULE, "several-events.htm"},
    {IDD_CONFIGURE_SCHEDULES, "schedules.htm"},
    {IDD_EDIT_SCHEDULE, "edit-schedule.htm"},
    {IDD_SETUP_EVENT, "event-editor.htm"},
    {IDD_SERVER_AUDIO, "server-audio.htm"},
    {IDD_TTS_FILENAME, "tts-filename.htm"},
    {IDD_TTS, "spoken-text.htm"},
    {IDD_EMAIL, "email-template.htm"},
    {IDD_PREFERENCES, "preferences.htm"},
    {IDD_PREFERENCES_GENERAL, "preferences.htm"},
    {IDD_PREFERENCES_EMAIL, "preferences-email.htm"},
}};

}  // namespace

std::span<const HelpChapter> helpChapters() {
    return kChapters;
}

std::string_view helpChapter(unsigned topic) {
    const auto found = std::ranges::find(kChapters, topic, &HelpChapter::topic);
    return found != kChapters.end() ? found->file : std::string_view();
}

}  // namespace orvc
