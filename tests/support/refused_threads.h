// Threads that do not start. Programs that link refused_threads.cpp start theirs through it.
#pragma once

#include "fault_loop.h"

namespace orvc {

// Says which threads are refused, as by a system that has no more.
FaultPlan& threadFaults();

}  // namespace orvc
