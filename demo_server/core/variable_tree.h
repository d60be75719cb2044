// The server's system variables: named values in a tree of keys.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "link/ks_types.h"

namespace orvc::demo {

// A name splits behind its last backslash into the path of its key (with that backslash) and the field, so that path
// plus field is the name again, whatever it looks like. A large installation has a million values under some fifty
// thousand keys: each key's path is stored once, and a field's name once for the whole tree.
//
// A value may stand under a key that nobody created; only created keys count as keys when the tree is told.
// Not synchronised. References to keys stay good until the key is removed.
class VariableTree {
  public:
    struct Value {
        std::uint32_t field = 0;  // see fieldName()
        bool isString = false;
        std::uint32_t number = 0;  // of a dword
        std::string text;          // of a string

        // The type word under which the value is told.
        std::uint32_t type() const { return isString ? variable_type::kString : variable_type::kDword; }
    };
    struct Key {
        bool created = false;
        std::vector<Value> values;
    };
    using Keys = std::map<std::string, Key, std::less<>>;

    // One item that removeKey() took away, with the type word it had.
    struct Removed {
        std::string name;
        std::uint32_t type = 0;
    };

    // Creates the key, with or without a backslash at the end of its path; an existing one stays as it is.
    Key& createKey(std::string_view path);

    // Stores a value, whatever stood under its name before.
    void setString(std::string_view name, std::string_view text);
    void setDword(std::string_view name, std::uint32_t number);

    // The same for a field of a key at hand, without looking the key up.
    void setString(Key& key, std::string_view field, std::string_view text);
    void setDword(Key& key, std::string_view field, std::uint32_t number);

    // Removes the key and everything beneath it: its values first, then the key, deeper keys after it. Empty when there
    // is no such key.
    std::vector<Removed> removeKey(std::string_view path);

    // Null when there is no such value. Good until the next change.
    const Value* find(std::string_view name) const;
    const Value* find(const Key& key, std::string_view field) const;

    const Keys& keys() const { return keys_; }
    bool hasKey(std::string_view path) const;
    std::string_view fieldName(std::uint32_t field) const { return fields_[field]; }

    // The name under which a key is told: without the backslash at its end, except for the root of a tree.
    static std::string_view keyName(std::string_view path);

    // `path` with a backslash at its end.
    static std::string asKeyPath(std::string_view path);

  private:
    Value& valueFor(Key& key, std::string_view field);
    Key& keyFor(std::string_view path);

    Keys keys_;
    std::vector<std::string> fields_;
    std::unordered_map<std::string, std::uint32_t> fieldNumbers_;
};

}  // namespace orvc::demo
