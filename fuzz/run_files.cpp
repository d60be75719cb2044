// Runs a target once for each file in the folders that are named, where there is no fuzzer.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/input.h"

int main(int count, char** arguments) {
    std::size_t files = 0;
    for (const char* folder : std::span(arguments, static_cast<std::size_t>(count)).subspan(1)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::fprintf(stderr, "%s\n", entry.path().c_str());  // the last one named is the one that fails
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++files;
        }
    }
    std::printf("%zu files\n", files);
    return files > 0 ? 0 : 1;
}
