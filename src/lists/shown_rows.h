// Which of the rows on the screen look different than before.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lists/list_source.h"

namespace orvc {

// Purpose: remembers what the visible rows showed, so that only those are painted again that changed: while events pour
// in, most of them change nothing visible, and painting is slow.
// Thread: user-interface thread.
class ShownRows {
  public:
    // What has to be painted.
    struct Changes {
        bool all = false;
        std::vector<std::size_t> rows;  // ascending; empty when all are
    };

    // Looks at the rows of `source` that are visible now, `count` from `first` on, each with these columns.
    Changes update(const ListSource& source, std::size_t first, std::size_t count,
                   const std::vector<std::size_t>& columns);

  private:
    std::size_t first_ = 0;
    std::size_t size_ = 0;            // of the source
    std::vector<std::string> texts_;  // of the rows from first_ on
};

}  // namespace orvc
