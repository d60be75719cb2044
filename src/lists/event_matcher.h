// Which Events a filter lets through.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lists/event_filter.h"
#include "lists/event_values.h"
#include "lists/text_pool.h"

namespace orvc {

// Purpose: holds a filter against Events. A text that many Events share is searched once, when it is first met.
// Thread: user-interface thread. Lifetime: the pool outlives the matcher and forgets no text meanwhile.
// Errors: matches() throws std::bad_alloc.
class EventMatcher {
  public:
    // As parseFilter() gives them.
    EventMatcher(std::vector<FilterTerm> terms, EventState state) : terms_(std::move(terms)), state_(state) { reset(); }

    // Lets everything through.
    bool isEmpty() const { return terms_.empty() && state_ == EventState::kAll; }

    // `own` is what the Event shares with no other: its folded name and time.
    bool matches(const EventValues& values, std::string_view own, const TextPool& pool);

    // The numbers of the pool's texts are others from here on.
    void reset();

  private:
    using Mask = std::uint32_t;  // a bit for each term of a part
    static constexpr std::size_t kTermsInPart = 31;
    static constexpr Mask kSearched = Mask{1} << kTermsInPart;

    // Some of the terms, as many as have room in a mask.
    struct Part {
        std::size_t first = 0;  // in terms_
        std::size_t count = 0;
        Mask all = 0;
        Mask anywhere = 0;                                   // terms of no column
        std::array<Mask, kSharedColumns.size()> inColumn{};  // terms that may be found there
        std::vector<Mask> foundIn;                           // by text: kSearched and the terms that it holds
    };

    bool hasState(const EventValues& values) const;
    bool matches(Part& part, const EventValues& values, std::string_view own, const TextPool& pool) const;
    Mask search(Part& part, TextPool::Id text, const TextPool& pool) const;

    std::vector<FilterTerm> terms_;
    EventState state_;
    std::vector<Part> parts_;
};

}  // namespace orvc
