// A line at the foot of a dialog that takes no room while it has nothing to say.
#pragma once

#include <windows.h>

#include <string>

namespace orvc::ui {

// Purpose: shows a text in the lowest control of a dialog, a static one, and makes the dialog as high as the text's
// lines need. A screen reader is told of a new text. Thread: user-interface thread. Lifetime: attached as long as the
// dialog is open.
class FootLine {
  public:
    // Call before the dialog is placed on the screen.
    void attach(HWND line);
    void show(const std::string& text);

  private:
    int textHeight() const;
    void fitDialog() const;

    HWND line_ = nullptr;
    std::string text_;
};

}  // namespace orvc::ui
