// Texts that a person reads, by the ids of resources/resource.h.
#pragma once

#include <string>

namespace orvc {

// The string table of the language in use. User-interface thread.
class StringTable {
  public:
    virtual ~StringTable() = default;
    // Empty when there is no such text.
    virtual std::string text(unsigned id) const = 0;
};

}  // namespace orvc
