// A lock for std::lock_guard that needs no clean-up and works in every thread that Windows makes.
#pragma once

#include <windows.h>

namespace orvc::demo {

// Not recursive.
class SlimLock {
  public:
    void lock() { AcquireSRWLockExclusive(&lock_); }
    void unlock() { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK lock_ = SRWLOCK_INIT;
};

}  // namespace orvc::demo
