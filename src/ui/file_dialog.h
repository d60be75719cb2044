// The system's dialog for choosing a file.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace orvc::ui {

// Lets the operator choose a file to open; empty when the dialog is cancelled. `filter` has its parts separated by "|"
// and ends with "||"; `current` is where the dialog starts.
std::optional<std::string> chooseFileToOpen(HWND owner, const std::string& current, std::string filter,
                                            const std::string& extension);

}  // namespace orvc::ui
