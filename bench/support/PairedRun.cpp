#include "support/PairedRun.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace corvel {

namespace {

double secondsOf(const PairedRun::Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

void PairedRun::run(benchmark::State& state, const Work& ours, const Work& base) const {
    std::vector<double> oursSeconds;
    std::vector<double> baseSeconds;
    // One round to warm both up, then by turns, each first every other time.
    ours();
    base();
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int round = 0; round < m_rounds; ++round) {
            if (round % 2 == 0) oursSeconds.push_back(secondsOf(ours));
            baseSeconds.push_back(secondsOf(base));
            if (round % 2 != 0) oursSeconds.push_back(secondsOf(ours));
        }
        state.SetIterationTime(medianOf(oursSeconds));
    }
    const double oursMedian = medianOf(oursSeconds);
    const double baseMedian = medianOf(baseSeconds);
    state.counters["ours_us"] = oursMedian * 1e6;
    state.counters["base_us"] = baseMedian * 1e6;
    state.counters["ratio"] = oursMedian / baseMedian;
}

void registerPaired(const std::string& name, std::function<void(benchmark::State&)> body) {
    benchmark::RegisterBenchmark(name.c_str(), std::move(body))
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

}  // namespace corvel
