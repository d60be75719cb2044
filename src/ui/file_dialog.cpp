#include "ui/file_dialog.h"

#include <cderr.h>
#include <commdlg.h>

#include <algorithm>
#include <vector>

namespace orvc::ui {
namespace {

constexpr std::size_t kPathRoom = 32768;

}  // namespace

std::optional<std::string> chooseFileToOpen(HWND owner, const std::string& current, std::string filter,
                                            const std::string& extension) {
    std::ranges::replace(filter, '|', '\0');
    std::vector<char> path(kPathRoom, '\0');
    if (current.size() < path.size()) std::ranges::copy(current, path.begin());
    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = filter.c_str();
    request.lpstrFile = path.data();
    request.nMaxFile = static_cast<DWORD>(path.size());
    request.lpstrDefExt = extension.c_str();
    request.Flags = OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
    if (GetOpenFileNameA(&request)) return std::string(path.data());
    // A typed text that is no file name keeps the dialog from opening: try again without it.
    if (CommDlgExtendedError() != FNERR_INVALIDFILENAME) return std::nullopt;
    path[0] = '\0';
    return GetOpenFileNameA(&request) ? std::optional(std::string(path.data())) : std::nullopt;
}

}  // namespace orvc::ui
