// The hash table behind the variable store: few waits for memory, and no pause when it grows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
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

    std::uint32_t node;  // the table's own
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
// A million variables do not fit into a processor's caches, so what counts is how often a step waits for memory. The
// chains of the buckets run through small nodes that lie in the order in which the variables came; a variable itself is
// only touched when its hash is the one looked for. A record's variables come together and are asked for together: they
// lie in neighbouring buckets. Names that all fall into few buckets this way (thousands of fields of one record) are
// spread over all of them instead, once and for good until clear(). The table grows by linear hashing: each insertion
// splits one bucket, so no insertion ever pays for rehashing all. Memory of removed variables is used again, and goes
// back to the system with clear().
//
// Not synchronised. insert() and setText() throw std::bad_alloc and change nothing then.
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
    using NodeIndex = std::uint32_t;
    struct Node {
        std::uint32_t hash;
        NodeIndex next;            // in its bucket, newest first among equal names; or among the free nodes
        StoredVariable* variable;  // null: the node is free
    };
    static constexpr NodeIndex kNone = 0xFFFFFFFF;
    static constexpr std::size_t kNodesInBlock = 1024;

    Node& node(NodeIndex index) const { return nodes_[index / kNodesInBlock][index % kNodesInBlock]; }
    std::size_t bucketOf(std::uint32_t hash) const;
    void addFreeNodes();
    void splitNextBucket();
    void spread();
    StoredVariable* allocate(std::size_t nameLength, std::size_t textCapacity);
    void release(StoredVariable* variable);

    std::vector<NodeIndex> buckets_;  // the first node of each
    std::vector<std::unique_ptr<Node[]>> nodes_;
    NodeIndex freeNode_ = kNone;
    std::size_t roundSize_;  // buckets at the start of this round of splits: a power of two
    std::size_t nextToSplit_ = 0;
    std::size_t size_ = 0;
    bool spread_ = false;                            // hash whole names
    std::pmr::unsynchronized_pool_resource memory_;  // of variables of ordinary size
    std::size_t largeCount_ = 0;                     // of the others
};

}  // namespace orvc
