#include "support/LoopSlices.h"

#include <glibmm/main.h>

#include <algorithm>

namespace corvel {

void LoopSlices::runUntil(const std::function<bool()>& isDone) {
    using Clock = std::chrono::steady_clock;
    const auto context = Glib::MainContext::get_default();
    while (!isDone()) {
        const auto start = Clock::now();
        const auto processorStart = std::clock();
        context->iteration(false);
        m_longest = std::max(m_longest, Clock::now() - start);
        m_costliest = std::max(m_costliest, std::clock() - processorStart);
    }
}

void LoopSlices::report(benchmark::State& state) const {
    state.counters["longest_slice_ms"] = longestMilliseconds();
    state.counters["costliest_slice_ms"] = costliestMilliseconds();
}

}  // namespace corvel
