// Names of system variables below a record's key.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvc {

inline constexpr std::string_view kRootPath = R"(\ORVS\)";
inline constexpr std::string_view kEventsPath = R"(\ORVS\Events\)";
inline constexpr std::string_view kSchedulesPath = R"(\ORVS\Schedules\)";

// A record's key of this length or more is never found again.
inline constexpr std::size_t kUnfindableKeyLength = 128;

// "<parent><key>\<rest>" taken apart; both parts view the name.
struct RecordPath {
    std::string_view key;
    std::string_view rest;
};

// Empty when `name` is not below a key of `parent` (which ends in a backslash).
inline std::optional<RecordPath> splitRecordPath(std::string_view name, std::string_view parent) {
    if (!name.starts_with(parent)) return std::nullopt;
    name.remove_prefix(parent.size());
    const std::size_t end = name.find('\\');
    if (end == std::string_view::npos) return std::nullopt;
    return RecordPath{name.substr(0, end), name.substr(end + 1)};
}

// "<parent><key>"
inline std::string joinPath(std::string_view parent, std::string_view key) {
    return std::string(parent).append(key);
}

}  // namespace orvc
