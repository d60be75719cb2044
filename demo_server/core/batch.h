// A batch of event callbacks, ready to be made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "link/ks_types.h"

namespace orvc::demo {

// Everything that the callbacks point to lies in one block that the batch keeps between uses, so that a million
// variables are told without an allocation each. Filled under the server's lock, delivered without it. Not
// synchronised.
class Batch {
  public:
    void clear();
    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    // Large enough to be worth delivering.
    bool full() const { return entries_.size() >= 256 || bytes_.size() >= 64 * 1024; }

    // A callback without data.
    void add(std::uint32_t code);
    // A callback whose data is the text.
    void addText(std::uint32_t code, std::string_view text);
    // A callback whose data is a copy of the record.
    template <typename Record>
    void addRecord(std::uint32_t code, std::int32_t number, const Record& record) {
        entries_.push_back({code, number, Shape::kData, append(&record, sizeof record), 0, 0, 0});
    }
    // A new connection, with the block of extra information that its data points to.
    void addConnection(std::int32_t socket, const KSConnectionInfo& info, const KSExtraIntercomInfo& extra);
    // A variable's notification. The name is given in two parts.
    void addString(std::string_view path, std::string_view field, std::uint32_t type, std::string_view text);
    void addDword(std::string_view path, std::string_view field, std::uint32_t type, std::uint32_t number);
    // A key's notification, or one of something removed: no text, no number.
    void addName(std::string_view name, std::uint32_t type);
    // A piece of a file; an empty one says that the file is complete.
    void addFileData(const KSGuid& file, std::string_view bytes);

    // The life of the logon that the batch belongs to; see Server::generation().
    std::uint32_t generation = 0;

    // Makes the callbacks in order, as long as keepGoing() says so before each.
    template <typename Callback, typename KeepGoing>
    void deliver(const Callback& callback, const KeepGoing& keepGoing) const {
        for (const Entry& entry : entries_) {
            if (!keepGoing()) return;
            deliverEntry(entry, callback);
        }
    }

  private:
    enum class Shape : std::uint8_t { kNothing, kData, kConnection, kVariable, kFile };
    static constexpr std::uint32_t kNoText = 0xFFFFFFFF;

    struct Entry {
        std::uint32_t code;
        std::int32_t number;
        Shape shape;
        std::uint32_t first;   // where the data, the connection, the name or the GUID begins
        std::uint32_t second;  // where the extra information, the text or the file's bytes begin
        std::uint32_t type;
        std::uint32_t value;
    };

    // Copies bytes in, aligned for every record; gives their place.
    std::uint32_t append(const void* bytes, std::size_t size);
    // Copies a text in, in two parts, with a terminator behind.
    std::uint32_t appendText(std::string_view text, std::string_view rest = {});
    const char* at(std::uint32_t place) const { return bytes_.data() + place; }

    template <typename Callback>
    void deliverEntry(const Entry& entry, const Callback& callback) const {
        switch (entry.shape) {
            case Shape::kNothing:
                callback(entry.code, entry.number, nullptr, nullptr);
                break;
            case Shape::kData:
                callback(entry.code, entry.number, nullptr, at(entry.first));
                break;
            case Shape::kConnection: {
                const KSWord words[5] = {1, reinterpret_cast<KSWord>(at(entry.second))};
                callback(entry.code, entry.number, at(entry.first), words);
                break;
            }
            case Shape::kVariable: {
                const KSVariableNotification variable{
                    at(entry.first), entry.type, entry.second == kNoText ? nullptr : at(entry.second), entry.value};
                callback(entry.code, entry.number, nullptr, &variable);
                break;
            }
            case Shape::kFile: {
                KSFileData data;
                std::memcpy(&data.file, at(entry.first), sizeof data.file);
                data.bytes = at(entry.second);
                data.byteCount = entry.value;
                callback(entry.code, entry.number, nullptr, &data);
                break;
            }
        }
    }

    std::vector<Entry> entries_;
    std::vector<char> bytes_;
};

}  // namespace orvc::demo
