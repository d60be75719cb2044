// The file that the server is delivering in chunks.
#pragma once

#include <string>
#include <string_view>

namespace orvc {

// Thread: user-interface thread. Whoever asks for a file clears first and then looks for isComplete().
class FileReader {
  public:
    void clear() {
        bytes_.clear();
        bytes_.shrink_to_fit();
        complete_ = false;
    }
    // An empty chunk says that the file is complete.
    void append(std::string_view chunk) {
        if (chunk.empty())
            complete_ = true;
        else
            bytes_.append(chunk);
    }

    bool isComplete() const { return complete_; }
    const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
    bool complete_ = false;
};

}  // namespace orvc
