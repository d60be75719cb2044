// The help file in use, and opening it at the chapter of a window.
#pragma once

#include <windows.h>

#include <string>

#include "support/folders.h"
#include "support/tracking_log.h"
#include "ui/resources.h"

namespace orvc {

// Thread: user-interface thread. Guarantees: if a help file cannot be opened, the operator and the log are told,
// and nothing else happens.
class Help {
  public:
    // Both outlive the object.
    Help(const ui::Resources& resources, TrackingLog& log) : resources_(resources), log_(log) {}

    // Takes the help file of the user's or the system's language that lies in this folder, else the one without a
    // language in its name.
    void choose(const FileSystem& files, const std::string& installFolder);

    // Opens the chapter of a topic (help_chapters.h) in Windows' own viewer, a program of its own. `owner` is the
    // window from which help was asked for.
    void open(HWND owner, unsigned topic);
    // Opens the first page.
    void openFirstPage(HWND owner) { openFile(owner, {}); }

  private:
    void openFile(HWND owner, std::string_view chapter);

    const ui::Resources& resources_;
    TrackingLog& log_;
    std::string path_;
    bool telling_ = false;
};

}  // namespace orvc
