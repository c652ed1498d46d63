// Loaded into the program by bench/search_provider.py (LD_PRELOAD). Writes down every turn of the
// main loop of a millisecond of processor time or more, from one waiting for events to the next:
// when it began, how long it was by the clock and what the main thread used of it, in milliseconds,
// a line each.
#include <dlfcn.h>
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr const char* kFile = "CORVEL_LOOP_TURNS";
constexpr double kShortest = 1;

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class LoopTurns {
public:
    LoopTurns() {
        if (const char* file = std::getenv(kFile)) m_out = std::fopen(file, "w");
        // The processes that the program starts write none.
        unsetenv(kFile);
        unsetenv("LD_PRELOAD");
        begin();
    }

    void begin() {
        m_began = milliseconds(CLOCK_MONOTONIC);
        m_used = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    }

    void end() {
        const double used = milliseconds(CLOCK_THREAD_CPUTIME_ID) - m_used;
        if (m_out == nullptr || used < kShortest) return;
        const double length = milliseconds(CLOCK_MONOTONIC) - m_began;
        std::fprintf(m_out, "%.3f %.3f %.3f\n", m_began, length, used);
        std::fflush(m_out);
    }

private:
    std::FILE* m_out = nullptr;
    double m_began = 0;
    double m_used = 0;
};

}  // namespace

// In place of the system's; the toolkit's loop waits by it.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int poll(pollfd* files, nfds_t count, int timeout) {
    using Poll = int (*)(pollfd*, nfds_t, int);
    static const auto wait = reinterpret_cast<Poll>(dlsym(RTLD_NEXT, "poll"));
    if (gettid() != getpid()) return wait(files, count, timeout);
    static LoopTurns turns;
    turns.end();
    const int ready = wait(files, count, timeout);
    turns.begin();
    return ready;
}
