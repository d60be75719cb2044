// Dialogs, menus, icons and texts: from the language library in use, else from the program itself.
#pragma once

#include <windows.h>

#include <string>

#include "support/string_table.h"
#include "win32/handles.h"

namespace orvc::win32 {

// Thread: user-interface thread.
class Resources final : public StringTable {
  public:
    // Loads a language library from the program's folder as resources only: none of its code runs. Returns false when
    // there is no such library.
    bool loadLanguage(const std::string& fileName);

    std::string text(unsigned id) const override;
    // Null when neither has it. The template lives as long as the program.
    const DLGTEMPLATE* findDialog(unsigned id) const;
    UniqueMenu loadMenu(unsigned id) const;
    HACCEL loadAccelerators(unsigned id) const;
    // The program's icon in the size that `width` asks for.
    static UniqueIcon loadIcon(unsigned id, int width);

  private:
    UniqueModule language_;
};

}  // namespace orvc::win32
