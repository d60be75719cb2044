// What the console's menu shows, asked from another process.
#pragma once

#include <windows.h>

#include "tour/console_driver.h"

namespace orvc::test {

// The state of an item of the main window's menu when it opens, as GetMenuState() gives it: MF_GRAYED, MF_CHECKED, ….
UINT menuState(driver::ConsoleDriver& console, unsigned command);

}  // namespace orvc::test
