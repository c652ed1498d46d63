#include "markdown/MarkdownParserService.h"

#include <benchmark/benchmark.h>
#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <chrono>
#include <cstdlib>
#include <string>

// Rendering a note's body, beside cmark-gfm's own parser and HTML writer with the same extensions
// and malloc, which is what a program would use otherwise. Both are timed in turn in one run; the
// counter "ratio" is ours divided by theirs.

namespace {

constexpr std::string_view kNote = R"(# Notatki ze spotkania – Project plan

Dzisiaj omówiliśmy **najważniejsze** zadania na *przyszły tydzień*; the rest is in
[the plan](https://example.org/plan?week=12&lang=pl) and at https://example.org/a/b?c=1&d=2 .

- [x] wysłać szkic do recenzji, zanim zacznie się "gorący" okres
- [ ] review the `render()` function & measure it
  - zażółć gęślą jaźń – próba znaków

1. First we gather the numbers, then we look at them closely.
2. Później piszemy podsumowanie, które ~~nikt~~ każdy przeczyta.

| Zadanie | Owner | Termin |
|:--------|:-----:|-------:|
| Szkic | Anna | 12.03 |
| Testing the export | Marek | 14.03 |

> Cytat z książki: „kto pyta, nie błądzi”, as the saying goes.

```cpp
for (int i = 0; i < count; ++i) total += values[i] * "x"[0];
```

Zwykły akapit tekstu, w którym nie dzieje się nic szczególnego, tylko kolejne słowa płyną jedno
za drugim. An ordinary paragraph follows it, with plain words and hardly a mark between them.

)";

std::string noteOf(std::size_t size) {
    std::string note;
    while (note.size() < size)
        note += kNote;
    return note.substr(0, note.rfind("\n\n", size));
}

std::size_t renderByLibrary(const std::string& note) {
    cmark_gfm_core_extensions_ensure_registered();
    cmark_parser* parser = cmark_parser_new(CMARK_OPT_DEFAULT);
    for (const char* name : {"table", "strikethrough", "tasklist"}) {
        cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(name));
    }
    cmark_parser_feed(parser, note.data(), note.size());
    cmark_node* root = cmark_parser_finish(parser);
    char* html =
        cmark_render_html(root, CMARK_OPT_DEFAULT, cmark_parser_get_syntax_extensions(parser));
    const std::size_t size = std::string_view(html).size();
    std::free(html);
    cmark_node_free(root);
    cmark_parser_free(parser);
    return size;
}

// Gathers what was freed before, which malloc leaves to the next larger request: neither side pays
// for the other.
void settleHeap() {
    constexpr std::size_t kLarge = std::size_t{32} * 1024;
    void* block = std::malloc(kLarge);
    benchmark::DoNotOptimize(block);
    std::free(block);
}

template <typename Work>
double secondsOf(Work work) {
    settleHeap();
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(work());
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_RenderBody(benchmark::State& state) {
    const std::string note = noteOf(static_cast<std::size_t>(state.range(0)));
    double ours = 0;
    double theirs = 0;
    for (auto iteration : state) {
        const double time =
            secondsOf([&] { return corvel::MarkdownParserService::renderBody(note).size(); });
        state.SetIterationTime(time);
        ours += time;
        theirs += secondsOf([&] { return renderByLibrary(note); });
    }
    state.counters["ratio"] = ours / theirs;
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(note.size()));
}
BENCHMARK(BM_RenderBody)->Arg(2 << 10)->Arg(100 << 10)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
