// The list of server audio messages without a window.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

#include "lists/list_model.h"
#include "lists/list_source.h"
#include "model/directory.h"

namespace orvc {

// Purpose: lists each message's name once, in byte order; of several with one name the one sent last.
// Thread: user-interface thread. The messages are copied.
class AudioTable final : public ListSource {
  public:
    explicit AudioTable(const Directory& directory);

    std::size_t size() const override { return model_.size(); }
    std::string cell(std::size_t row, std::size_t) const override { return model_.at(row).name; }
    const std::string& key(std::size_t row) const { return model_.at(row).key; }
    // The row of the message with that key; nothing when there is none or the key is empty.
    std::optional<std::size_t> rowOf(const std::string& key) const;

  private:
    struct Row {
        std::string name;
        std::string key;
    };

    std::deque<Row> rows_;
    ListModel<Row> model_;
};

}  // namespace orvc
