#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace corvel {

/// Times two pieces of work by turns, so that what else the machine does falls on both, and
/// compares their medians.
class PairedRun {
public:
    using Work = std::function<void()>;

    explicit PairedRun(int rounds) : m_rounds(rounds) {}

    /// To be the whole body of a benchmark with one iteration and manual time. The result is the
    /// median of `ours`; counters: "ours_us", "base_us" and "ratio", ours to base.
    void run(benchmark::State& state, const Work& ours, const Work& base) const;

private:
    int m_rounds;
};

/// Registers `body` under `name` in the way PairedRun needs.
void registerPaired(const std::string& name, std::function<void(benchmark::State&)> body);

}  // namespace corvel
