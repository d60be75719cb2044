#include "dialogs/about_dialog.h"

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr int kIconSize = 48;

}  // namespace

CAboutDlg::CAboutDlg(const ui::Resources& resources, std::vector<std::string> lines)
    : Dialog(resources, IDD_ABOUT), lines_(std::move(lines)) {}

bool CAboutDlg::onInit() {
    for (const std::string& line : lines_)
        SendMessageA(control(IDC_ABOUT_LIST), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    icon_ = ui::Resources::loadIcon(IDI_MAIN, scale(kIconSize));
    SendMessageA(control(IDC_ABOUT_ICON), STM_SETICON, reinterpret_cast<WPARAM>(icon_.get()), 0);
    centerOn(GetParent(window()));
    return true;
}

}  // namespace orvc
