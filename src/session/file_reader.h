// The file that the server is delivering in chunks.
#pragma once

#include <string>
#include <string_view>

#include "link/ks_types.h"

namespace orvc {

// Thread: user-interface thread. Whoever asks for a file says so first, and then looks for isComplete().
class FileReader {
  public:
    // Clears the data and accepts only chunks of `file`: an abandoned read may still deliver.
    void expect(const KSGuid& file) {
        clear();
        expected_ = file;
    }
    void clear() {
        bytes_.clear();
        bytes_.shrink_to_fit();
        complete_ = false;
    }
    // An empty chunk says that the file is complete.
    void append(const KSGuid& file, std::string_view chunk) {
        if (file != expected_) return;
        if (chunk.empty())
            complete_ = true;
        else
            bytes_.append(chunk);
    }

    bool isComplete() const { return complete_; }
    const std::string& bytes() const { return bytes_; }

  private:
    KSGuid expected_;
    std::string bytes_;
    bool complete_ = false;
};

}  // namespace orvc
