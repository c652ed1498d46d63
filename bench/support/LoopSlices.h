#pragma once

#include <benchmark/benchmark.h>
#include <glib.h>

#include <chrono>
#include <ctime>
#include <functional>

namespace corvel {

/// Turns the main loop and remembers what held it up longest: the time from one waiting for events
/// to the next.
class LoopSlices {
public:
    /// Turns the default loop until `isDone` holds.
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
    using Clock = std::chrono::steady_clock;

    static gint wait(GPollFD* files, guint count, gint timeout);
    void begin();
    void end();

    Clock::time_point m_start;
    std::clock_t m_processorStart = 0;
    Clock::duration m_longest{};
    std::clock_t m_costliest = 0;
};

}  // namespace corvel
