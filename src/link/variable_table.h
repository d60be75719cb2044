// The hash table behind the variable store: one allocation per variable, and no pause when it grows.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvc {

// A stored variable. The texts lie behind the object in the same allocation and are valid until the variable is next
// set or removed.
struct StoredVariable {
    std::string_view name() const { return {texts(), nameLength}; }
    std::optional<std::string_view> text() const {
        return hasText ? std::optional<std::string_view>({texts() + nameLength, textLength}) : std::nullopt;
    }

    StoredVariable* next;  // in its bucket, newest first among equal names
    std::uint32_t hash;
    std::uint32_t type;
    std::uint32_t number;
    std::uint32_t nameLength;
    std::uint32_t textLength;
    std::uint32_t textCapacity;
    bool hasText;

  private:
    friend class VariableTable;
    const char* texts() const { return reinterpret_cast<const char*>(this + 1); }
    char* texts() { return reinterpret_cast<char*>(this + 1); }
};

// Purpose: finds variables by name in constant time. Several may stand under one name (with different types).
//
// Grows by linear hashing: each insertion splits one bucket, so no insertion ever pays for rehashing all. A record's
// variables come together and are asked for together: they lie in neighbouring buckets, so that a million variables
// wait for memory once for each record and not for each variable. Names that all fall into few buckets this way
// (thousands of fields of one record) are spread over all of them instead, once and for good until clear(). Not
// synchronised. insert() and setText() throw std::bad_alloc.
class VariableTable {
  public:
    VariableTable();
    ~VariableTable();
    VariableTable(const VariableTable&) = delete;
    VariableTable& operator=(const VariableTable&) = delete;

    // Valid until the next insertion.
    std::uint32_t hashOf(std::string_view name) const;

    // The first variable of that name, newest first, from `after` on (exclusive; null = from the start); null when
    // there is none.
    StoredVariable* find(std::string_view name, std::uint32_t hash, const StoredVariable* after = nullptr) const;

    // A new variable before all of the same name, with type and number 0 and no text.
    StoredVariable* insert(std::string_view name, std::uint32_t hash, std::size_t textCapacity);

    // Replaces the text. The variable may move: use the result from here on.
    StoredVariable* setText(StoredVariable* variable, std::optional<std::string_view> text);

    void remove(StoredVariable* variable);
    void clear();
    std::size_t size() const { return size_; }

  private:
    std::size_t bucketOf(std::uint32_t hash) const;
    StoredVariable** slotOf(const StoredVariable* variable);
    void splitNextBucket();
    void spread();
    static StoredVariable* allocate(std::size_t nameLength, std::size_t textCapacity);
    static void release(StoredVariable* variable);

    std::vector<StoredVariable*> buckets_;
    std::size_t roundSize_;  // buckets at the start of this round of splits: a power of two
    std::size_t nextToSplit_ = 0;
    std::size_t size_ = 0;
    bool spread_ = false;  // hash whole names
};

}  // namespace orvc
