// Reading a fuzzer's bytes as values, and saying what must hold.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvc {

// Ends the process when something that must hold does not.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

// A text as a payload file's escapes keep it: letters beyond ASCII become one.
inline std::string withoutLoss(std::string_view text) {
    std::string kept(text);
    std::ranges::replace_if(
        kept, [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '\xFF');
    return kept;
}

// One input, read from its front. What is read beyond its end is zeros and empty texts.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

    bool isEmpty() const { return left_.empty(); }
    unsigned byte() {
        const std::string_view one = take(1);
        return one.empty() ? 0 : static_cast<unsigned char>(one[0]);
    }
    bool flag() { return (byte() & 1) != 0; }
    std::uint32_t word() {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i)
            word = word << 8 | byte();
        return word;
    }
    std::string_view take(std::size_t count) {
        const std::string_view taken = left_.substr(0, count);
        left_.remove_prefix(taken.size());
        return taken;
    }
    std::string_view rest() { return take(left_.size()); }
    // Of at most 255 bytes, zeros included.
    std::string text() { return std::string(take(byte())); }
    // A text as the library has them, which ends at the first zero.
    std::string terminated() { return text().c_str(); }
    // One of `choices`, or a text of the input's own.
    std::string choose(std::span<const std::string_view> choices) {
        const std::size_t choice = byte();
        return choice < choices.size() ? std::string(choices[choice]) : terminated();
    }
    // A block of exactly `size` bytes: reading past its end is noticed.
    std::vector<char> block(std::size_t size) {
        const std::string_view taken = take(size);
        std::vector<char> bytes(size);
        std::copy(taken.begin(), taken.end(), bytes.begin());
        return bytes;
    }
    std::vector<char> restAsBlock() { return block(left_.size()); }

  private:
    std::string_view left_;
};

}  // namespace orvc

// What the fuzzer calls, and what run_files.cpp calls for each file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
