#include "demo_server/core/variable_tree.h"

namespace orvc::demo {
namespace {

struct SplitName {
    std::string_view path;
    std::string_view field;
};

SplitName splitName(std::string_view name) {
    const std::size_t backslash = name.rfind('\\');
    const std::size_t length = backslash == std::string_view::npos ? 0 : backslash + 1;
    return {name.substr(0, length), name.substr(length)};
}

}  // namespace

std::string_view VariableTree::keyName(std::string_view path) {
    const bool isRoot = path.find('\\', 1) == path.size() - 1;
    return isRoot || path.empty() ? path : path.substr(0, path.size() - 1);
}

std::string VariableTree::asKeyPath(std::string_view path) {
    std::string withBackslash(path);
    if (path.empty() || path.back() != '\\') withBackslash += '\\';
    return withBackslash;
}

VariableTree::Key& VariableTree::keyFor(std::string_view path) {
    const auto found = keys_.find(path);
    return found != keys_.end() ? found->second : keys_.emplace(path, Key{}).first->second;
}

VariableTree::Key& VariableTree::createKey(std::string_view path) {
    Key& key = keyFor(asKeyPath(path));
    key.created = true;
    return key;
}

bool VariableTree::hasKey(std::string_view path) const {
    const auto found = keys_.find(asKeyPath(path));
    return found != keys_.end() && found->second.created;
}

VariableTree::Value& VariableTree::valueFor(Key& key, std::string_view field) {
    const auto [entry, isNew] =
        fieldNumbers_.try_emplace(std::string(field), static_cast<std::uint32_t>(fields_.size()));
    if (isNew) fields_.emplace_back(field);
    const std::uint32_t number = entry->second;
    for (Value& value : key.values) {
        if (value.field == number) return value;
    }
    Value& value = key.values.emplace_back();
    value.field = number;
    return value;
}

void VariableTree::setString(Key& key, std::string_view field, std::string_view text) {
    Value& value = valueFor(key, field);
    value.isString = true;
    value.text = text;
    value.number = 0;
}

void VariableTree::setDword(Key& key, std::string_view field, std::uint32_t number) {
    Value& value = valueFor(key, field);
    value.isString = false;
    value.text.clear();
    value.number = number;
}

void VariableTree::setString(std::string_view name, std::string_view text) {
    const auto [path, field] = splitName(name);
    setString(keyFor(path), field, text);
}

void VariableTree::setDword(std::string_view name, std::uint32_t number) {
    const auto [path, field] = splitName(name);
    setDword(keyFor(path), field, number);
}

std::vector<VariableTree::Removed> VariableTree::removeKey(std::string_view path) {
    const std::string prefix = asKeyPath(path);
    std::vector<Removed> removed;
    auto entry = keys_.lower_bound(prefix);
    while (entry != keys_.end() && entry->first.starts_with(prefix)) {
        for (const Value& value : entry->second.values) {
            removed.push_back({entry->first + fields_[value.field], value.type()});
        }
        // The backslash at the end says that it is a whole key.
        if (entry->second.created) removed.push_back({entry->first, variable_type::kKey});
        entry = keys_.erase(entry);
    }
    return removed;
}

const VariableTree::Value* VariableTree::find(const Key& key, std::string_view field) const {
    for (const Value& value : key.values) {
        if (fields_[value.field] == field) return &value;
    }
    return nullptr;
}

const VariableTree::Value* VariableTree::find(std::string_view name) const {
    const auto [path, field] = splitName(name);
    const auto found = keys_.find(path);
    return found != keys_.end() ? find(found->second, field) : nullptr;
}

}  // namespace orvc::demo
