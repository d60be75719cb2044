#include "checker/problem.h"

#include <array>

namespace orvc {

std::string_view problemName(ProblemCode code) {
    static constexpr std::array<std::string_view, kProblemCodeCount> kNames{
        "source-device", "source-group",   "destination-device", "destination-group", "empty-group",
        "schedule",      "schedule-never", "time-outside",       "message",           "no-text",
        "no-email",      "no-file",        "no-mail-server",     "same-as",           "not-stored",
        "bad-data",      "offline"};
    return kNames.at(static_cast<std::size_t>(code));
}

}  // namespace orvc
