#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <functional>

namespace corvel {

/// Turns the main loop and remembers the turn that held it up longest.
class LoopSlices {
public:
    /// Turns the default loop until `isDone` holds, without waiting in it.
    void runUntil(const std::function<bool()>& isDone);

    /// Counters: "longest_slice_ms" by the clock, and "costliest_slice_ms" of processor time, in
    /// which other work on the machine has no part.
    void report(benchmark::State& state) const;

    double longestMilliseconds() const {
        return std::chrono::duration<double, std::milli>(m_longest).count();
    }
    double costliestMilliseconds() const {
        return 1000.0 * static_cast<double>(m_costliest) / CLOCKS_PER_SEC;
    }

private:
    std::chrono::steady_clock::duration m_longest{};
    std::clock_t m_costliest = 0;
};

}  // namespace corvel
