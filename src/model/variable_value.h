// A value as it is written to the server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvc {

// One system variable: its full name, and its text or its number. Not a std::variant: this compiler's library destroys
// one wrongly whose copy has failed for lack of memory.
struct VariableValue {
    VariableValue(std::string fullName, std::string value) : name(std::move(fullName)), text(std::move(value)) {}
    VariableValue(std::string fullName, std::uint32_t value) : name(std::move(fullName)), number(value) {}

    std::string name;
    std::optional<std::string> text;  // none: it is a number
    std::uint32_t number = 0;

    friend bool operator==(const VariableValue&, const VariableValue&) = default;
};

// The values of a record in the order in which they are written.
using VariableValues = std::vector<VariableValue>;

}  // namespace orvc
