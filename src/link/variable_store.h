// The console's mirror of the server's system variables, and their way to the records that they make up.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "link/variable_table.h"
#include "support/tracking_log.h"

namespace orvc {

// One variable as it arrives or is stored. The views are valid during the call that they are given to.
struct Variable {
    std::string_view name;
    std::uint32_t type = 0;
    std::optional<std::string_view> text;
    std::uint32_t number = 0;
};

// Who builds records from variables. Asked in the order of registration until one claims the variable.
class VariableOwner {
  public:
    virtual ~VariableOwner() = default;
    // Returns true when the variable is this owner's, whether or not it could use it.
    virtual bool updateVariable(const Variable& variable) = 0;
    // Another console deleted this key, with everything below it. The path ends in a backslash.
    virtual void removeKey(std::string_view path) { static_cast<void>(path); }
};

// Purpose: keeps every variable that the server sent and hands each one to its owner.
// Thread: user-interface thread. Cost: constant per notification, however many variables there are.
// Lifetime: the log and the owners outlive the store's last use of them.
class VariableStore {
  public:
    explicit VariableStore(TrackingLog& log) : log_(log) {}

    void addOwner(VariableOwner& owner) { owners_.push_back(&owner); }
    // Decides whether a deleted key is passed on to the owners: not one that this console deleted itself.
    void setKeyFilter(std::function<bool(std::string_view path)> isForeign) { isForeignKey_ = std::move(isForeign); }
    // Runs after each variable that was stored and offered to the owners.
    void setAfterRouting(std::function<void()> afterRouting) { afterRouting_ = std::move(afterRouting); }

    // The stored variable of that name and type, bit 24 left aside; null when there is none. Those of the same name and
    // another type are logged on the way.
    const StoredVariable* getSystemVariable(std::string_view name, std::uint32_t type) const {
        return lookUp(name, table_.hashOf(name), type);
    }

    // Applies one notification: stores the variable and routes it, or removes it when its type says so. The owners hear
    // of the deletion of a whole key, never of a single value's.
    void doSystemVariableUpdate(const Variable& notification);

    std::size_t size() const { return table_.size(); }
    void clear() { table_.clear(); }

  private:
    StoredVariable* lookUp(std::string_view name, std::uint32_t hash, std::uint32_t type) const;
    void route(const StoredVariable& stored);
    void removeKey(std::string_view path);

    TrackingLog& log_;
    VariableTable table_;
    std::vector<VariableOwner*> owners_;
    std::function<void()> afterRouting_;
    std::function<bool(std::string_view)> isForeignKey_;
};

}  // namespace orvc
