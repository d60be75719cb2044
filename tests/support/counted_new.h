// Memory that is counted and can be made to run out. Programs that link counted_new.cpp take all theirs from it.
#pragma once

#include <cstddef>

#include "fault_loop.h"

namespace orvc {

// Bytes that are allocated now, on all threads.
std::size_t allocatedBytes();

// Says which allocations fail: of every thread but those of an Exempt.
FaultPlan& allocationFaults();

// While one lives, its thread's allocations succeed: what tests and fakes do themselves.
class Exempt {
  public:
    Exempt();
    ~Exempt();
    Exempt(const Exempt&) = delete;
    Exempt& operator=(const Exempt&) = delete;
};

}  // namespace orvc
