#include "lists/shown_rows.h"

#include <algorithm>
#include <utility>

namespace orvc {

ShownRows::Changes ShownRows::update(const ListSource& source, std::size_t first, std::size_t count,
                                     const std::vector<std::size_t>& columns) {
    const std::size_t size = source.size();
    std::vector<std::string> texts;
    for (std::size_t row = first; row < std::min(size, first + count); ++row) {
        std::string& text = texts.emplace_back();
        for (const std::size_t column : columns)
            text.append(source.cell(row, column)).append("\n");
    }
    Changes changes;
    // Where rows have gone, what they left empty is painted too.
    changes.all = size < size_ || first != first_;
    for (std::size_t i = 0; !changes.all && i < texts.size(); ++i)
        if (i >= texts_.size() || texts_[i] != texts[i]) changes.rows.push_back(first + i);
    first_ = first;
    size_ = size;
    texts_ = std::move(texts);
    return changes;
}

}  // namespace orvc
