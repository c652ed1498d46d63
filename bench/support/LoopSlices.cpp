#include "support/LoopSlices.h"

#include <glibmm/main.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

// The loop knows functions only.
LoopSlices* watching = nullptr;

}  // namespace

gint LoopSlices::wait(GPollFD* files, guint count, gint timeout) {
    watching->end();
    const gint ready = g_poll(files, count, timeout);
    watching->begin();
    return ready;
}

void LoopSlices::begin() {
    m_start = Clock::now();
    m_processorStart = std::clock();
}

void LoopSlices::end() {
    m_longest = std::max(m_longest, Clock::now() - m_start);
    m_costliest = std::max(m_costliest, std::clock() - m_processorStart);
}

void LoopSlices::runUntil(const std::function<bool()>& isDone) {
    const auto context = Glib::MainContext::get_default();
    const auto usual = g_main_context_get_poll_func(context->gobj());
    auto* const outer = std::exchange(watching, this);
    g_main_context_set_poll_func(context->gobj(), &LoopSlices::wait);
    begin();
    while (!isDone())
        context->iteration(true);
    end();
    g_main_context_set_poll_func(context->gobj(), usual);
    watching = outer;
}

void LoopSlices::report(benchmark::State& state) const {
    state.counters["longest_slice_ms"] = longestMilliseconds();
    state.counters["costliest_slice_ms"] = costliestMilliseconds();
}

}  // namespace corvel
