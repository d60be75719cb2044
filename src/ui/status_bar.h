// The status bar of a window: texts side by side, a hint over all of them, the progress of long work.
#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvc::ui {

// Purpose: shows texts in a status bar control, each part as wide as its text; the last one takes the rest. While work
// is under way, a progress bar and a button stand in the last part.
// Thread: user-interface thread. Lifetime: the control and the button are the window's.
class StatusBar {
  public:
    // `bar`: the status bar control. `cancel`: a hidden button of the same window, which ends the work.
    void attach(HWND bar, HWND cancel);

    // Puts the bar at the window's foot and its parts into it.
    void layOut();
    int height() const;

    // Nothing is painted where a text is as before.
    void show(const std::vector<std::string>& texts);
    // A text over the whole bar, such as what a menu item does; nothing shows the parts again.
    void showHint(const std::optional<std::string>& hint);
    // So much of all is done; nothing ends it.
    struct Progress {
        std::size_t done;
        std::size_t all;
    };
    void showProgress(const std::optional<Progress>& progress);

    // The part that was clicked on; nothing for another notification.
    std::optional<std::size_t> clickedPart(const NMHDR& header) const;

  private:
    int textWidth(const std::string& text) const;
    void placeProgress();

    HWND bar_ = nullptr;
    HWND cancel_ = nullptr;
    HWND progress_ = nullptr;  // inside the bar; made when it is first needed
    std::vector<std::string> texts_;
    std::vector<int> edges_;  // the right edge of each part, in pixels; -1 = that of the bar
    bool hasHint_ = false;
};

}  // namespace orvc::ui
