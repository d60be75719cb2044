#include "support/placement.h"

#include <algorithm>

namespace orvc {

ScreenPoint middleOf(const ScreenArea& area) {
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

ScreenPoint centerWithin(const ScreenArea& work, const ScreenArea& around, int width, int height) {
    const ScreenPoint middle = middleOf(around);
    return {std::max(work.left, std::min(middle.x - width / 2, work.right - width)),
            std::max(work.top, std::min(middle.y - height / 2, work.bottom - height))};
}

}  // namespace orvc
