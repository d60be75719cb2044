#include "link/variable_table.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

namespace orvc {
namespace {

constexpr std::size_t kFirstRoundSize = 64;
// A record's fields share 2 to this power neighbouring buckets.
constexpr unsigned kFieldBits = 5;
// What stands below its parent under a longer name is a record, of which there are many, and no field.
constexpr std::size_t kLongestField = 32;
// Variables in a bucket, of different names and two or three records, are a handful.
constexpr int kLongestBucket = 64;
// Bytes of a variable of ordinary size. A larger one gets memory of its own.
constexpr std::size_t kOrdinarySize = 1024;
// The pool fetches memory for so many variables of a size at most at once: what is not used of it is lost, and when it
// is used up the pool looks through all that it has fetched.
constexpr std::pmr::pool_options kPoolOptions{2048, kOrdinarySize};

std::size_t bytesOf(std::size_t nameLength, std::size_t textCapacity) {
    return sizeof(StoredVariable) + nameLength + textCapacity;
}

}  // namespace

VariableTable::VariableTable() : buckets_(kFirstRoundSize, kNone), roundSize_(kFirstRoundSize), memory_(kPoolOptions) {}

VariableTable::~VariableTable() {
    clear();
}

std::uint32_t VariableTable::hashOf(std::string_view name) const {
    const auto hash = [](std::string_view text) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(text));
    };
    const std::size_t field = name.rfind('\\') + 1;
    if (spread_ || name.size() - field > kLongestField) return hash(name);
    constexpr std::uint32_t kFieldMask = (1u << kFieldBits) - 1;
    const std::uint32_t record = hash(name.substr(0, field));
    // All records have the same few fields: each record begins elsewhere among its buckets.
    return record << kFieldBits | ((hash(name.substr(field)) ^ record >> (32 - kFieldBits)) & kFieldMask);
}

std::size_t VariableTable::bucketOf(std::uint32_t hash) const {
    const std::size_t bucket = hash & (roundSize_ - 1);
    return bucket < nextToSplit_ ? hash & (2 * roundSize_ - 1) : bucket;
}

StoredVariable* VariableTable::find(std::string_view name, std::uint32_t hash, const StoredVariable* after) const {
    NodeIndex index = after != nullptr ? node(after->node).next : buckets_[bucketOf(hash)];
    while (index != kNone) {
        const Node& candidate = node(index);
        if (candidate.hash == hash && candidate.variable->name() == name) return candidate.variable;
        index = candidate.next;
    }
    return nullptr;
}

StoredVariable* VariableTable::insert(std::string_view name, std::uint32_t hash, std::size_t textCapacity) {
    if (freeNode_ == kNone) addFreeNodes();
    if (size_ >= buckets_.size()) splitNextBucket();
    StoredVariable* const variable = allocate(name.size(), textCapacity);
    std::memcpy(variable->texts(), name.data(), name.size());
    variable->node = freeNode_;
    NodeIndex& bucket = buckets_[bucketOf(hash)];
    Node& added = node(freeNode_);
    freeNode_ = added.next;
    added = {hash, bucket, variable};
    bucket = variable->node;
    ++size_;
    if (!spread_) {
        int length = 0;
        for (NodeIndex other = bucket; other != kNone && length <= kLongestBucket; other = node(other).next)
            ++length;
        if (length > kLongestBucket) spread();
    }
    return variable;
}

void VariableTable::addFreeNodes() {
    const auto first = static_cast<NodeIndex>(nodes_.size() * kNodesInBlock);
    nodes_.push_back(std::make_unique<Node[]>(kNodesInBlock));
    for (NodeIndex index = first + kNodesInBlock; index-- > first;) {
        node(index) = {0, freeNode_, nullptr};
        freeNode_ = index;
    }
}

// Files every variable again, under the hash of its whole name. Those of one name keep their order.
void VariableTable::spread() {
    std::vector<NodeIndex> all;
    try {
        all.reserve(size_);
    } catch (const std::bad_alloc&) {
        return;  // a later insertion tries again
    }
    spread_ = true;
    for (NodeIndex& bucket : buckets_)
        for (NodeIndex index = std::exchange(bucket, kNone); index != kNone; index = node(index).next)
            all.push_back(index);
    for (auto index = all.rbegin(); index != all.rend(); ++index) {
        Node& moved = node(*index);
        moved.hash = hashOf(moved.variable->name());
        moved.next = std::exchange(buckets_[bucketOf(moved.hash)], *index);
    }
}

StoredVariable* VariableTable::setText(StoredVariable* variable, std::optional<std::string_view> text) {
    const std::size_t length = text ? text->size() : 0;
    if (length > variable->textCapacity) {
        StoredVariable* const larger = allocate(variable->nameLength, length);
        const auto capacity = larger->textCapacity;
        *larger = *variable;
        larger->textCapacity = capacity;
        std::memcpy(larger->texts(), variable->texts(), variable->nameLength);
        node(larger->node).variable = larger;
        release(variable);
        variable = larger;
    }
    variable->hasText = text.has_value();
    variable->textLength = static_cast<std::uint32_t>(length);
    if (length > 0) std::memcpy(variable->texts() + variable->nameLength, text->data(), length);
    return variable;
}

void VariableTable::remove(StoredVariable* variable) {
    const NodeIndex index = variable->node;
    Node& removed = node(index);
    NodeIndex* link = &buckets_[bucketOf(removed.hash)];
    while (*link != index)
        link = &node(*link).next;
    *link = removed.next;
    removed = {0, std::exchange(freeNode_, index), nullptr};
    release(variable);
    --size_;
}

void VariableTable::clear() {
    // Those of ordinary size go together, without a look at each.
    for (std::size_t index = 0; largeCount_ > 0 && index < nodes_.size() * kNodesInBlock; ++index) {
        StoredVariable* const variable = node(static_cast<NodeIndex>(index)).variable;
        if (variable != nullptr && bytesOf(variable->nameLength, variable->textCapacity) > kOrdinarySize)
            release(variable);
    }
    memory_.release();
    nodes_.clear();
    freeNode_ = kNone;
    buckets_.assign(kFirstRoundSize, kNone);
    buckets_.shrink_to_fit();
    roundSize_ = kFirstRoundSize;
    nextToSplit_ = 0;
    size_ = 0;
    spread_ = false;
}

// Moves the bucket's variables whose next hash bit is set to a new bucket at the end; both keep their order.
void VariableTable::splitNextBucket() {
    buckets_.push_back(kNone);
    NodeIndex* stay = &buckets_[nextToSplit_];
    NodeIndex* move = &buckets_.back();
    for (NodeIndex index = *stay; index != kNone; index = node(index).next) {
        NodeIndex*& end = (node(index).hash & roundSize_) != 0 ? move : stay;
        *end = index;
        end = &node(index).next;
    }
    *stay = kNone;
    *move = kNone;
    if (++nextToSplit_ == roundSize_) {
        roundSize_ *= 2;
        nextToSplit_ = 0;
    }
}

StoredVariable* VariableTable::allocate(std::size_t nameLength, std::size_t textCapacity) {
    const std::size_t size = bytesOf(nameLength, textCapacity);
    const bool isOrdinary = size <= kOrdinarySize;
    void* const memory = isOrdinary ? memory_.allocate(size, alignof(StoredVariable)) : ::operator new(size);
    auto* variable = new (memory) StoredVariable{};
    variable->nameLength = static_cast<std::uint32_t>(nameLength);
    variable->textCapacity = static_cast<std::uint32_t>(textCapacity);
    if (!isOrdinary) ++largeCount_;
    return variable;
}

void VariableTable::release(StoredVariable* variable) {
    const std::size_t size = bytesOf(variable->nameLength, variable->textCapacity);
    if (size <= kOrdinarySize) {
        memory_.deallocate(variable, size, alignof(StoredVariable));
    } else {
        ::operator delete(variable);
        --largeCount_;
    }
}

}  // namespace orvc
