#include "support/placement.h"

#include <gtest/gtest.h>

namespace orvc {
namespace {

TEST(Placement, ADialogIsCenteredAndWholeOnTheMonitorOfItsOwner) {
    constexpr ScreenArea kFirst{0, 0, 1920, 1040};
    constexpr ScreenArea kLeft{-1280, 100, 0, 1124};
    constexpr ScreenArea kAbove{0, -1080, 1920, -40};
    struct {
        const char* what;
        ScreenArea work, around;
        int width, height;
        ScreenPoint expected;
    } const rows[] = {
        {"in the middle of its owner", kFirst, {100, 200, 900, 800}, 400, 300, {300, 350}},
        {"no owner: in the middle of the monitor", kFirst, kFirst, 400, 300, {760, 370}},
        {"left of the first monitor", kLeft, {-1200, 200, -400, 800}, 400, 300, {-1000, 350}},
        {"above the first monitor", kAbove, {100, -900, 900, -300}, 400, 300, {300, -750}},
        {"owner beyond the left and upper edge", kLeft, {-1500, -100, -1100, 300}, 400, 300, {-1280, 100}},
        {"owner beyond the right and lower edge", kFirst, {1700, 900, 2100, 1300}, 400, 300, {1520, 740}},
        {"larger than the monitor", kLeft, kLeft, 1400, 1100, {-1280, 100}},
    };
    for (const auto& row : rows) {
        const ScreenPoint at = centerWithin(row.work, row.around, row.width, row.height);
        EXPECT_EQ(at, row.expected) << row.what << ": " << at.x << ", " << at.y;
    }
}

}  // namespace
}  // namespace orvc
