#include "app/setup_server_audio_dialog.h"

#include <commctrl.h>

#include <algorithm>

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr int kColumnWidth = 200;  // pixels at 96 DPI

}  // namespace

CSetupServerAudioFileDlg::CSetupServerAudioFileDlg(const win32::Resources& resources, const Directory& directory,
                                                   std::string key)
    : Dialog(resources, IDD_SERVER_AUDIO), key_(std::move(key)) {
    for (const AudioMessage& message : directory.messages())
        entries_.push_back({std::string(message.name()), std::string(message.key())});
    // Of several messages with one name the last told, which the directory lists first, stands for all.
    std::ranges::stable_sort(entries_, {}, &Entry::name);
    const auto rest = std::ranges::unique(entries_, {}, &Entry::name);
    entries_.erase(rest.begin(), rest.end());
}

bool CSetupServerAudioFileDlg::onInit() {
    fillList();
    const auto chosen = std::ranges::find(entries_, key_, &Entry::key);
    if (chosen != entries_.end() && !key_.empty()) {
        const auto row = static_cast<WPARAM>(chosen - entries_.begin());
        LVITEMA item{};
        item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        item.state = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageA(control(IDC_AUDIO_LIST), LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
        SendMessageA(control(IDC_AUDIO_LIST), LVM_ENSUREVISIBLE, row, FALSE);
    }
    enable(IDOK, selectedRow() >= 0);
    centerOn(GetParent(window()));
    return true;
}

void CSetupServerAudioFileDlg::fillList() {
    const HWND list = control(IDC_AUDIO_LIST);
    constexpr DWORD kStyles = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES;
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);
    std::string title = resources().text(IDS_AUDIO_COLUMN);
    LVCOLUMNA column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.fmt = LVCFMT_LEFT;
    column.cx = scale(kColumnWidth);
    column.pszText = title.data();
    SendMessageA(list, LVM_INSERTCOLUMNA, 0, reinterpret_cast<LPARAM>(&column));
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    SendMessageA(list, LVM_SETITEMCOUNT, entries_.size(), 0);
    for (std::size_t row = 0; row < entries_.size(); ++row) {
        LVITEMA item{};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(row);
        item.pszText = entries_[row].name.data();
        SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    }
    SendMessageA(list, WM_SETREDRAW, TRUE, 0);
}

int CSetupServerAudioFileDlg::selectedRow() const {
    return static_cast<int>(
        SendMessageA(control(IDC_AUDIO_LIST), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

bool CSetupServerAudioFileDlg::onCommand(unsigned id, unsigned notification) {
    if (id != IDOK) return Dialog::onCommand(id, notification);
    const int row = selectedRow();
    if (row < 0) return true;
    key_ = entries_[static_cast<std::size_t>(row)].key;
    endDialog(IDOK);
    return true;
}

std::optional<LRESULT> CSetupServerAudioFileDlg::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_AUDIO_LIST) return std::nullopt;
    if (header.code == LVN_ITEMCHANGED) enable(IDOK, selectedRow() >= 0);
    if (header.code == NM_DBLCLK) onCommand(IDOK, 0);
    return std::nullopt;
}

}  // namespace orvc
