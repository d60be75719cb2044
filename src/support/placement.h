// Where a dialog goes on the screen.
#pragma once

namespace orvc {

// Pixels of the desktop. Left of the first monitor and above it they are negative.
struct ScreenPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

// `right` and `bottom` are the first pixels that no longer belong to the area.
struct ScreenArea {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

ScreenPoint middleOf(const ScreenArea& area);

// The top left corner of a window of that size: centred on the middle of `around`, but moved so that all of it lies
// within `work`, the usable part of a monitor. Of a window that is too large, the top left corner stays in view.
ScreenPoint centerWithin(const ScreenArea& work, const ScreenArea& around, int width, int height);

}  // namespace orvc
