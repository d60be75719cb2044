// Problems as a person reads them.
#pragma once

#include <string>
#include <vector>

#include "checker/event_names.h"
#include "checker/problem.h"
#include "support/string_table.h"

namespace orvc {

// What is wrong and what to do about it, in one or two sentences.
std::string problemSentence(const Problem& problem, const StringTable& strings, const EventNames& names);

// Several problems in a few words each: "Unknown source device; No text". Each of them once; empty for none.
std::string problemSummary(const std::vector<Problem>& problems, const StringTable& strings);

}  // namespace orvc
