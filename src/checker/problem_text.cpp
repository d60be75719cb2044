#include "checker/problem_text.h"

#include "model/mac.h"
#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

// The place of a problem's texts: there is one for each code, and one for nothing that could be named.
unsigned placeOf(const Problem& problem) {
    if (problem.about.empty() && problem.code == ProblemCode::kMessage)
        return IDS_PROBLEM_NO_MESSAGE - IDS_PROBLEM_SOURCE_DEVICE;
    if (problem.about.empty() && problem.code == ProblemCode::kTimeOutside)
        return IDS_PROBLEM_NO_TIME - IDS_PROBLEM_SOURCE_DEVICE;
    return static_cast<unsigned>(problem.code);
}

std::string nameOf(const Problem& problem, const EventNames& names) {
    switch (problem.code) {
        case ProblemCode::kScheduleNever:
        case ProblemCode::kTimeOutside:
            return names.schedule(problem.about);
        case ProblemCode::kSameAs:
            return names.event(problem.about);
        case ProblemCode::kOffline:
            return names.device(parseMac(problem.about).value_or(KSMac{}));
        default:
            return problem.about;
    }
}

}  // namespace

std::string problemSentence(const Problem& problem, const StringTable& strings, const EventNames& names) {
    return fillIn(strings.text(IDS_PROBLEM_SOURCE_DEVICE + placeOf(problem)), {nameOf(problem, names)});
}

std::string problemSummary(const std::vector<Problem>& problems, const StringTable& strings) {
    std::string summary;
    unsigned last = 0;
    for (const Problem& problem : problems) {
        // Those of one code stand together.
        const unsigned id = IDS_PROBLEM_SHORT_SOURCE_DEVICE + placeOf(problem);
        if (id == last) continue;
        last = id;
        const std::string text = strings.text(id);
        summary = summary.empty() ? text : fillIn(strings.text(IDS_PROBLEM_AND_ANOTHER), {summary, text});
    }
    return summary;
}

}  // namespace orvc
