// What a list control shows, row by row.
#pragma once

#include <cstddef>
#include <string>

namespace orvc {

// User-interface thread.
class ListSource {
  public:
    virtual ~ListSource() = default;
    virtual std::size_t size() const = 0;
    // `row` is less than size(), `column` one of the list's own.
    virtual std::string cell(std::size_t row, std::size_t column) const = 0;
};

}  // namespace orvc
