#include "dialogs/setup_server_audio_dialog.h"

#include <commctrl.h>

#include "resources/resource.h"

namespace orvc {
namespace {

constexpr int kColumnWidth = 200;  // pixels at 96 DPI

}  // namespace

CSetupServerAudioFileDlg::CSetupServerAudioFileDlg(const ui::Resources& resources, const Directory& directory,
                                                   std::string key)
    : Dialog(resources, IDD_SERVER_AUDIO), table_(directory), key_(std::move(key)) {}

bool CSetupServerAudioFileDlg::onInit() {
    list_.attach(control(IDC_AUDIO_LIST), table_, [this] { enable(IDOK, list_.selectedRow().has_value()); });
    list_.addColumn(resources().text(IDS_AUDIO_COLUMN));
    list_.setColumnWidth(0, scale(kColumnWidth));
    list_.show();
    if (const auto chosen = table_.rowOf(key_)) {
        list_.select(chosen);
        list_.scrollTo(*chosen);
    }
    enable(IDOK, list_.selectedRow().has_value());
    centerOn(GetParent(window()));
    return true;
}

bool CSetupServerAudioFileDlg::onCommand(unsigned id, unsigned notification) {
    if (id != IDOK) return Dialog::onCommand(id, notification);
    const auto row = list_.selectedRow();
    if (!row) return true;
    key_ = table_.key(*row);
    endDialog(IDOK);
    return true;
}

std::optional<LRESULT> CSetupServerAudioFileDlg::onNotify(NMHDR& header) {
    if (header.idFrom != IDC_AUDIO_LIST) return std::nullopt;
    if (header.code == NM_DBLCLK) onCommand(IDOK, 0);
    return list_.onNotify(header);
}

}  // namespace orvc
