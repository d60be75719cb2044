#include "tour/stored_installation.h"

#include <cstdlib>
#include <fstream>

namespace orvc::driver {
namespace {

constexpr const char* kRoot = "\\ORVS\\";

// A percent sign and two hexadecimal digits stand for a byte.
std::string decode(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            decoded += static_cast<char>(std::strtoul(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

}  // namespace

StoredInstallation::StoredInstallation(const std::string& path) {
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        const std::size_t blank = line.find(' ');
        const std::size_t separator = line.find(" = ");
        if (blank == std::string::npos || separator == std::string::npos) continue;
        const std::string kind = line.substr(0, blank);
        const std::string name = decode(line.substr(blank + 1, separator - blank - 1));
        const std::string value = decode(line.substr(separator + 3));
        if (kind == "string" || kind == "dword") values_[name] = value;
        if (kind == "file") files_[name] = value;
    }
}

std::string StoredInstallation::findKey(const std::string& branch, const std::string& field,
                                        const std::string& value) const {
    const std::string parent = kRoot + branch + "\\";
    const std::string end = "\\" + field;
    for (const auto& [name, stored] : values_)
        if (stored == value && name.starts_with(parent) && name.ends_with(end))
            return name.substr(parent.size(), name.size() - parent.size() - end.size());
    return {};
}

std::string StoredInstallation::value(const std::string& branch, const std::string& key,
                                      const std::string& field) const {
    return setting(branch + "\\" + key + "\\" + field);
}

std::string StoredInstallation::setting(const std::string& name) const {
    const auto found = values_.find(kRoot + name);
    return found != values_.end() ? found->second : std::string();
}

std::string StoredInstallation::file(const std::string& guid) const {
    const auto found = files_.find(guid);
    return found != files_.end() ? found->second : std::string();
}

}  // namespace orvc::driver
