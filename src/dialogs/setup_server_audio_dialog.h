// The picker of a server audio message.
#pragma once

#include <string>

#include "lists/audio_table.h"
#include "ui/dialog.h"
#include "ui/list_view.h"

namespace orvc {

// Lists the messages by name, each name once. Thread: user-interface thread.
class CSetupServerAudioFileDlg final : public ui::Dialog {
  public:
    // `key`: the message chosen so far; empty for none. The messages are copied.
    CSetupServerAudioFileDlg(const ui::Resources& resources, const Directory& directory, std::string key);

    // True when a message was saved: key() is its key.
    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const std::string& key() const { return key_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;

    AudioTable table_;
    ui::ListView list_;
    std::string key_;
};

}  // namespace orvc
