#include "console/help.h"

#include "console/local_setup.h"
#include "resources/resource.h"
#include "support/help_chapters.h"
#include "support/language.h"
#include "support/text.h"
#include "ui/dialog.h"
#include "ui/help_viewer.h"

namespace orvc {

static_assert(kMessagesTopic == ui::kMessageBoxTopic);

void Help::choose(const FileSystem& files, const std::string& installFolder) {
    const HelpFile help = chooseHelpFile(files, installFolder, currentLanguages());
    path_ = help.path;
    if (help.language)
        log_.log("Loaded language for 0x%04x", *help.language);
    else
        log_.log("Loaded Help from '%s'", path_.c_str());
}

void Help::open(HWND owner, unsigned topic) {
    openFile(owner, helpChapter(topic));
}

void Help::openFile(HWND owner, std::string_view chapter) {
    // While the message below is open, F1 must not put another one on top of it.
    if (telling_) return;
    log_.log("Help File is named '%s'", path_.c_str());
    log_.log("openHelp: Chapter '%s'", std::string(chapter).c_str());
    if (ui::openHelpFile(owner, path_, chapter)) return;
    log_.log("openHelp: The help file could not be opened");
    telling_ = true;
    ui::showMessage(owner, fillIn(resources_.text(IDS_HELP_NOT_OPENED), {path_}), resources_.text(IDS_ERROR_CAPTION));
    telling_ = false;
}

}  // namespace orvc
