// The picker of a server audio message.
#pragma once

#include <string>

#include "lists/audio_table.h"
#include "win32/dialog.h"
#include "win32/list_view.h"

namespace orvc {

// Lists the messages by name, each name once. Thread: user-interface thread.
class CSetupServerAudioFileDlg final : public win32::Dialog {
  public:
    // `key`: the message chosen so far; empty for none. The messages are copied.
    CSetupServerAudioFileDlg(const win32::Resources& resources, const Directory& directory, std::string key);

    // True when a message was saved: key() is its key.
    bool run(HWND owner) { return runModal(owner) == IDOK; }
    const std::string& key() const { return key_; }

  private:
    bool onInit() override;
    bool onCommand(unsigned id, unsigned notification) override;
    std::optional<LRESULT> onNotify(NMHDR& header) override;

    AudioTable table_;
    win32::ListView list_;
    std::string key_;
};

}  // namespace orvc
