#include "support/PairedRun.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeFile.h"
#include "themes/ThemeStylesheet.h"

#include <benchmark/benchmark.h>

#include <string>

// What a theme costs: its stylesheet, made anew for every rendering, beside copying one that was
// kept; and reading a theme file. A thousand of each a round.

namespace corvel {
namespace {

constexpr int kRounds = 41;
constexpr int kTimes = 1000;

template <typename Work>
PairedRun::Work repeated(Work work) {
    return [work] {
        for (int i = 0; i < kTimes; ++i)
            benchmark::DoNotOptimize(work());
    };
}

void stylesheet(benchmark::State& state) {
    const std::string kept = generateCSS(themes::builtInDark());
    PairedRun(kRounds).run(state, repeated([] { return generateCSS(themes::builtInDark()); }),
                           repeated([&kept] { return std::string(kept); }));
}

void decoding(benchmark::State& state) {
    const std::string file = ThemeFile::encode(themes::builtInDark());
    PairedRun(kRounds).run(state, repeated([&file] { return ThemeFile::decode(file); }),
                           repeated([] { return generateCSS(themes::builtInDark()); }));
}

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    corvel::registerPaired("stylesheet, beside a copy of one", corvel::stylesheet);
    corvel::registerPaired("theme file, beside a stylesheet", corvel::decoding);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
