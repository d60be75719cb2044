// What the code under test did, in order. All fakes of a test write into one journal.
#pragma once

#include <string>
#include <utility>

namespace orvc {

class Journal {
  public:
    void add(const std::string& entry) { entries_.append(entries_.empty() ? "" : "; ").append(entry); }
    // Everything since the last call: "first; second".
    std::string take() { return std::exchange(entries_, {}); }

  private:
    std::string entries_;
};

}  // namespace orvc
