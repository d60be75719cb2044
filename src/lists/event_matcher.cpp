#include "lists/event_matcher.h"

#include <algorithm>

namespace orvc {

void EventMatcher::reset() {
    parts_.clear();
    for (std::size_t first = 0; first < terms_.size(); first += kTermsInPart) {
        Part& part = parts_.emplace_back();
        part.first = first;
        part.count = std::min(kTermsInPart, terms_.size() - first);
        part.all = (Mask{1} << part.count) - 1;
        for (std::size_t i = 0; i < part.count; ++i) {
            const Mask bit = Mask{1} << i;
            const auto column = terms_[first + i].column;
            if (!column) part.anywhere |= bit;
            for (std::size_t each = 0; each < kSharedColumns.size(); ++each)
                if (!column || *column == kSharedColumns[each]) part.inColumn[each] |= bit;
        }
    }
}

bool EventMatcher::matches(const EventValues& values, std::string_view own, const TextPool& pool) {
    if (!hasState(values)) return false;
    return std::ranges::all_of(parts_, [&](Part& part) { return matches(part, values, own, pool); });
}

bool EventMatcher::hasState(const EventValues& values) const {
    switch (state_) {
        case EventState::kAvailable:
            return values.status == EventStatus::kAvailable;
        case EventState::kDisabled:
            return values.status == EventStatus::kDisabled;
        case EventState::kWithProblems:
            return values.hasProblem;
        default:
            return true;
    }
}

bool EventMatcher::matches(Part& part, const EventValues& values, std::string_view own, const TextPool& pool) const {
    Mask found = 0;
    for (std::size_t i = 0; i < values.texts.size(); ++i)
        if (values.texts[i] != 0) found |= search(part, values.texts[i], pool) & part.inColumn[i];
    Mask missing = part.all & ~found;
    if ((missing & ~part.anywhere) != 0) return false;
    for (std::size_t i = 0; missing != 0; ++i, missing >>= 1)
        if ((missing & 1) != 0 && own.find(terms_[part.first + i].text) == std::string_view::npos) return false;
    return true;
}

EventMatcher::Mask EventMatcher::search(Part& part, TextPool::Id text, const TextPool& pool) const {
    if (text >= part.foundIn.size()) part.foundIn.resize(pool.size());
    Mask& mask = part.foundIn[text];
    if (mask != 0) return mask;
    const std::string_view folded = pool.folded(text);
    Mask found = kSearched;
    for (std::size_t i = 0; i < part.count; ++i)
        if (folded.find(terms_[part.first + i].text) != std::string_view::npos) found |= Mask{1} << i;
    mask = found;
    return found;
}

}  // namespace orvc
