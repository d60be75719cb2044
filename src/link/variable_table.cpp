#include "link/variable_table.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>

namespace orvc {
namespace {

constexpr std::size_t kFirstRoundSize = 64;

}  // namespace

VariableTable::VariableTable() : buckets_(kFirstRoundSize), roundSize_(kFirstRoundSize) {}

VariableTable::~VariableTable() {
    clear();
}

std::uint32_t VariableTable::hashOf(std::string_view name) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>{}(name));
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
    return variable;
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
