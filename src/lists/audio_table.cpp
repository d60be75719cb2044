#include "lists/audio_table.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace orvc {

AudioTable::AudioTable(const Directory& directory)
    : model_([](const Row& row) { return row.name; }, [](const Row& row) { return std::string_view(row.key); }) {
    std::set<std::string_view> names;
    // The directory lists the newest first.
    for (const AudioMessage& message : directory.messages())
        if (names.insert(message.name()).second)
            rows_.push_back({std::string(message.name()), std::string(message.key())});
    for (const Row& row : rows_)
        model_.insert(row);
}

std::optional<std::size_t> AudioTable::rowOf(const std::string& key) const {
    if (key.empty()) return std::nullopt;
    const auto found = std::ranges::find(rows_, key, &Row::key);
    return found != rows_.end() ? model_.rowOf(*found) : std::nullopt;
}

}  // namespace orvc
