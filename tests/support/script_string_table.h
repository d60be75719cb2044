// The texts of a resource script, read from its source.
#pragma once

#include <charconv>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>

#include "support/string_table.h"

namespace orvc {

inline std::string readTextFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class ScriptStringTable final : public StringTable {
  public:
    // `project` is the folder of the sources, `script` a path in its resources. Texts stay in UTF-8.
    ScriptStringTable(const std::string& project, const std::string& script) {
        const auto each = [](const std::string& text, const char* expression, const auto& take) {
            const std::regex regex(expression);
            for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
                take((*match)[1], (*match)[2]);
        };
        std::map<std::string, unsigned> ids;
        each(readTextFile(project + "/resources/resource.h"), "#define (IDS_\\w+) (\\d+)",
             [&](const std::string& name, const std::string& id) { ids[name] = numberOf(id); });
        each(readTextFile(project + "/resources/" + script), "\n    (IDS_\\w+|\\d+) \"((?:[^\"]|\"\")*)\"",
             [&](const std::string& name, const std::string& text) {
                 const unsigned id = ids.contains(name) ? ids.at(name) : numberOf(name);
                 texts_[id] = std::regex_replace(text, std::regex("\"\""), "\"");
             });
    }
    std::string text(unsigned id) const override {
        const auto found = texts_.find(id);
        return found != texts_.end() ? found->second : std::string();
    }

  private:
    static unsigned numberOf(const std::string& digits) {
        unsigned number = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
        return number;
    }

    std::map<unsigned, std::string> texts_;
};

}  // namespace orvc
