#include "link/variable_store.h"

#include "link/ks_types.h"

namespace orvc {

StoredVariable* VariableStore::lookUp(std::string_view name, std::uint32_t hash, std::uint32_t type) const {
    const std::uint32_t wanted = type & ~variable_type::kDeleted;
    for (StoredVariable* stored = table_.find(name, hash); stored != nullptr;
         stored = table_.find(name, hash, stored)) {
        if ((stored->type & ~variable_type::kDeleted) == wanted) return stored;
        log_.log("getSystemVariable: Found a different type 0x%08x != 0x%08x (0x%08x)", stored->type, type, wanted);
    }
    return nullptr;
}

void VariableStore::doSystemVariableUpdate(const Variable& notification) {
    const std::uint32_t hash = table_.hashOf(notification.name);
    StoredVariable* stored = lookUp(notification.name, hash, notification.type);
    if ((notification.type & variable_type::kDeleted) != 0) {
        if (stored != nullptr) table_.remove(stored);
        const bool isKey = (notification.type & variable_type::kValue) == 0;
        if (isKey && notification.name.ends_with('\\')) removeKey(notification.name);
        return;
    }
    if (stored == nullptr)
        stored = table_.insert(notification.name, hash, notification.text ? notification.text->size() : 0);
    stored->type = notification.type;
    stored->number = notification.number;
    if (notification.name.empty() || notification.name.front() != '\\')
        log_.log("doSystemVariableUpdate: Invalid name in system variable (%.*s)",
                 static_cast<int>(notification.name.size()), notification.name.data());
    stored = table_.setText(stored, notification.text);
    route(*stored);
}

void VariableStore::removeKey(std::string_view path) {
    if (isForeignKey_ && !isForeignKey_(path)) return;
    for (VariableOwner* owner : owners_)
        owner->removeKey(path);
}

void VariableStore::route(const StoredVariable& stored) {
    const Variable variable{stored.name(), stored.type, stored.text(), stored.number};
    for (VariableOwner* owner : owners_)
        if (owner->updateVariable(variable)) break;
    if (afterRouting_) afterRouting_();
}

}  // namespace orvc
