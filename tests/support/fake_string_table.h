// A string table whose texts name their ids; those with placeholders are given by the test.
#pragma once

#include <map>

#include "support/string_table.h"

namespace orvc {

struct FakeStringTable final : StringTable {
    std::string text(unsigned id) const override {
        const auto found = texts.find(id);
        return found != texts.end() ? found->second : std::string("#").append(std::to_string(id));
    }
    std::map<unsigned, std::string> texts;
};

}  // namespace orvc
