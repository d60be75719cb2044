#include "demo_server/core/batch.h"

namespace orvc::demo {

void Batch::clear() {
    entries_.clear();
    bytes_.clear();
}

std::uint32_t Batch::append(const void* bytes, std::size_t size) {
    constexpr std::size_t kAlignment = 8;
    bytes_.resize((bytes_.size() + kAlignment - 1) / kAlignment * kAlignment);
    const std::size_t place = bytes_.size();
    const auto* first = static_cast<const char*>(bytes);
    bytes_.insert(bytes_.end(), first, first + size);
    return static_cast<std::uint32_t>(place);
}

std::uint32_t Batch::appendText(std::string_view text, std::string_view rest) {
    const std::size_t place = bytes_.size();
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    bytes_.insert(bytes_.end(), rest.begin(), rest.end());
    bytes_.push_back(0);
    return static_cast<std::uint32_t>(place);
}

void Batch::add(std::uint32_t code) {
    entries_.push_back({code, 0, Shape::kNothing, 0, 0, 0, 0});
}

void Batch::addText(std::uint32_t code, std::string_view text) {
    entries_.push_back({code, 0, Shape::kData, appendText(text), 0, 0, 0});
}

void Batch::addConnection(std::int32_t socket, const KSConnectionInfo& info, const KSExtraIntercomInfo& extra) {
    const std::uint32_t first = append(&info, sizeof info);
    const std::uint32_t second = append(&extra, sizeof extra);
    entries_.push_back({event_code::kNewConnection, socket, Shape::kConnection, first, second, 0, 0});
}

void Batch::addString(std::string_view path, std::string_view field, std::uint32_t type, std::string_view text) {
    const std::uint32_t name = appendText(path, field);
    const std::uint32_t value = appendText(text);
    entries_.push_back({event_code::kVariable, 0, Shape::kVariable, name, value, type, 0});
}

void Batch::addDword(std::string_view path, std::string_view field, std::uint32_t type, std::uint32_t number) {
    entries_.push_back({event_code::kVariable, 0, Shape::kVariable, appendText(path, field), kNoText, type, number});
}

void Batch::addName(std::string_view name, std::uint32_t type) {
    addDword(name, {}, type, 0);
}

void Batch::addFileData(const KSGuid& file, std::string_view bytes) {
    const std::uint32_t guid = append(&file, sizeof file);
    const std::uint32_t data = append(bytes.data(), bytes.size());
    entries_.push_back(
        {event_code::kFileData, 0, Shape::kFile, guid, data, 0, static_cast<std::uint32_t>(bytes.size())});
}

}  // namespace orvc::demo
