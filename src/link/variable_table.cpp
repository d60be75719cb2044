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

}  // namespace

VariableTable::VariableTable() : buckets_(kFirstRoundSize), roundSize_(kFirstRoundSize) {}

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
    StoredVariable* variable = after != nullptr ? after->next : buckets_[bucketOf(hash)];
    while (variable != nullptr && (variable->hash != hash || variable->name() != name))
        variable = variable->next;
    return variable;
}

StoredVariable* VariableTable::insert(std::string_view name, std::uint32_t hash, std::size_t textCapacity) {
    if (size_ >= buckets_.size()) splitNextBucket();
    StoredVariable* const variable = allocate(name.size(), textCapacity);
    variable->hash = hash;
    variable->nameLength = static_cast<std::uint32_t>(name.size());
    std::memcpy(variable->texts(), name.data(), name.size());
    StoredVariable*& bucket = buckets_[bucketOf(hash)];
    variable->next = bucket;
    bucket = variable;
    ++size_;
    if (!spread_) {
        int length = 0;
        for (const StoredVariable* other = bucket; other != nullptr && length <= kLongestBucket; other = other->next)
            ++length;
        if (length > kLongestBucket) spread();
    }
    return variable;
}

// Files every variable anew under the hash of its whole name. Those of one name keep their order.
void VariableTable::spread() {
    spread_ = true;
    std::vector<StoredVariable*> variables;
    variables.reserve(size_);
    for (StoredVariable*& bucket : buckets_)
        for (StoredVariable* variable = std::exchange(bucket, nullptr); variable != nullptr; variable = variable->next)
            variables.push_back(variable);
    for (auto variable = variables.rbegin(); variable != variables.rend(); ++variable) {
        (*variable)->hash = hashOf((*variable)->name());
        StoredVariable*& bucket = buckets_[bucketOf((*variable)->hash)];
        (*variable)->next = bucket;
        bucket = *variable;
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
        *slotOf(variable) = larger;
        release(variable);
        variable = larger;
    }
    variable->hasText = text.has_value();
    variable->textLength = static_cast<std::uint32_t>(length);
    if (length > 0) std::memcpy(variable->texts() + variable->nameLength, text->data(), length);
    return variable;
}

void VariableTable::remove(StoredVariable* variable) {
    *slotOf(variable) = variable->next;
    release(variable);
    --size_;
}

void VariableTable::clear() {
    for (StoredVariable*& bucket : buckets_) {
        while (bucket != nullptr) {
            StoredVariable* const variable = bucket;
            bucket = variable->next;
            release(variable);
        }
    }
    buckets_.assign(kFirstRoundSize, nullptr);
    buckets_.shrink_to_fit();
    roundSize_ = kFirstRoundSize;
    nextToSplit_ = 0;
    size_ = 0;
    spread_ = false;
}

StoredVariable** VariableTable::slotOf(const StoredVariable* variable) {
    StoredVariable** slot = &buckets_[bucketOf(variable->hash)];
    while (*slot != variable)
        slot = &(*slot)->next;
    return slot;
}

// Moves the bucket's variables whose next hash bit is set to a new bucket at the end; both keep their order.
void VariableTable::splitNextBucket() {
    buckets_.push_back(nullptr);
    StoredVariable** stay = &buckets_[nextToSplit_];
    StoredVariable** move = &buckets_.back();
    for (StoredVariable* variable = *stay; variable != nullptr; variable = variable->next) {
        StoredVariable**& end = (variable->hash & roundSize_) != 0 ? move : stay;
        *end = variable;
        end = &variable->next;
    }
    *stay = nullptr;
    *move = nullptr;
    if (++nextToSplit_ == roundSize_) {
        roundSize_ *= 2;
        nextToSplit_ = 0;
    }
}

StoredVariable* VariableTable::allocate(std::size_t nameLength, std::size_t textCapacity) {
    void* memory = ::operator new(sizeof(StoredVariable) + nameLength + textCapacity);
    auto* variable = new (memory) StoredVariable{};
    variable->textCapacity = static_cast<std::uint32_t>(textCapacity);
    return variable;
}

void VariableTable::release(StoredVariable* variable) {
    ::operator delete(variable);
}

}  // namespace orvc
