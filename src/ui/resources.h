// Dialogs, menus, icons and texts: from the language library in use, else from the program itself.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/string_table.h"
#include "win32/handles.h"

namespace orvc::ui {

// Thread: user-interface thread.
class Resources final : public StringTable {
  public:
    // Loads a language library from the program's folder as resources only: none of its code runs. Returns false when
    // there is no such library, or one that cannot be used: damaged, or of another resource revision than the program,
    // whose code its dialogs then do not fit.
    bool loadLanguage(const std::string& fileName);
    // The libraries that were there but could not be used, a line for the tracking log each: which file, and why.
    const std::vector<std::string>& refusedLanguages() const { return refusedLanguages_; }

    std::string text(unsigned id) const override;
    // Null when neither has it. The template lives as long as the program.
    const DLGTEMPLATE* findDialog(unsigned id) const;
    win32::UniqueMenu loadMenu(unsigned id) const;
    // The program's icon in the size that `width` asks for.
    static win32::UniqueIcon loadIcon(unsigned id, int width);

  private:
    bool refuseLanguage(const std::string& path, const std::string& reason);

    win32::UniqueModule language_;
    std::vector<std::string> refusedLanguages_;
};

}  // namespace orvc::ui
