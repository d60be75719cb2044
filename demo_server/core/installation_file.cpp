#include "demo_server/core/installation_file.h"

#include <fstream>
#include <iterator>

#include "demo_server/core/guid.h"
#include "demo_server/core/installation_text.h"

namespace orvc::demo {
namespace fs = std::filesystem;

InstallationLoad loadInstallationFile(const fs::path& path) {
    std::error_code error;
    if (!fs::exists(path, error)) return {};
    std::ifstream file(path, std::ios::binary);
    if (!file) return {std::nullopt, "The installation file cannot be opened; the built-in building is used"};
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    file.close();
    InstallationParse parse = parseInstallation(text);
    if (parse.installation) return {std::move(parse.installation), {}};

    fs::path setAside = path;
    setAside += ".bad";
    fs::rename(path, setAside, error);
    return {std::nullopt, "The installation file is damaged (" + parse.problem +
                              ") and was set aside; the built-in building is used"};
}

bool saveInstallationFile(const fs::path& path, std::string_view text) {
    // Two consoles may save at the same time: each writes a file of its own, under the same name for its whole life.
    static const std::string ownSuffix = guidText(randomGuid()).append(".tmp");
    std::error_code error;
    if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
    fs::path fresh = path;
    fresh += ownSuffix;
    bool written = false;
    {
        std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
        file.write(text.data(), static_cast<std::streamsize>(text.size()));
        file.flush();
        written = file.good();
    }
    if (written) {
        fs::rename(fresh, path, error);
        if (!error) return true;
    }
    fs::remove(fresh, error);
    return false;
}

}  // namespace orvc::demo
