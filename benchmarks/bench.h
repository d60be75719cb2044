// What all benchmark programs share: the stopwatch, percentiles and the way to the report.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <vector>

namespace orvc::bench {

using StopClock = std::chrono::steady_clock;

inline double secondsSince(StopClock::time_point start) {
    return std::chrono::duration<double>(StopClock::now() - start).count();
}

// Seconds that `work` takes.
template <typename Work>
double measure(const Work& work) {
    const auto start = StopClock::now();
    work();
    return secondsSince(start);
}

#ifndef _WIN32
// The same in this thread's processor time, which other programs on the machine do not lengthen. For work that neither
// waits nor runs on several threads.
template <typename Work>
double measureProcessor(const Work& work) {
    const auto now = [] {
        std::timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    };
    const double start = now();
    work();
    return now() - start;
}
#endif

// The value below which `percent` of the values lie. Reorders them.
inline double percentile(std::vector<double>& values, double percent) {
    const auto at = static_cast<std::ptrdiff_t>(static_cast<double>(values.size() - 1) * percent / 100);
    std::nth_element(values.begin(), values.begin() + at, values.end());
    return values[static_cast<std::size_t>(at)];
}

// Adds one value to a series. report.py puts series into relation: seconds, bytes or pieces a second, as it says there.
inline void report(const char* series, double value) {
    std::printf("sample %s %.9g\n", series, value);
    std::fflush(stdout);
}

// Keeps the compiler from leaving out what makes `value`.
template <typename T>
void keep(const T& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

}  // namespace orvc::bench
