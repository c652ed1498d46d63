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
    state.counters["longest_slice_ms"] =
        std::chrono::duration<double, std::milli>(m_longest).count();
    state.counters["costliest_slice_ms"] =
        1000.0 * static_cast<double>(m_costliest) / CLOCKS_PER_SEC;
}

}  // namespace corvel
