// What a key in the note switcher costs over all titles of a library, beside four passes of memchr
// over the same titles. Prints one line a query; the ratios are what counts.
#include "library/Library.h"
#include "library/TitleIndex.h"
#include "model/PersistenceController.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace corvel {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kRows = 50;
constexpr int kRounds = 31;

double microsecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double median(std::vector<double> times) {
    std::ranges::sort(times);
    return times[times.size() / 2];
}

std::size_t passes(std::string_view text) {
    std::size_t found = 0;
    for (const char absent : {'\1', '\2', '\3', '\4'}) {
        found += std::memchr(text.data(), absent, text.size()) != nullptr ? 1U : 0U;
    }
    return found;
}

void run(const TitleIndex& index, const char* typed) {
    std::vector<double> ours;
    std::vector<double> base;
    std::size_t hits = 0;
    for (int round = 0; round < kRounds; ++round) {
        auto start = Clock::now();
        hits = index.search(FuzzyQuery(typed), kRows).size();
        ours.push_back(microsecondsSince(start));
        start = Clock::now();
        if (passes(index.titles().text()) != 0) std::abort();
        base.push_back(microsecondsSince(start));
    }
    std::printf("%-14s %3zu rows  %8.1f us  four passes %8.1f us  ratio %.2f\n", typed, hits,
                median(ours), median(base), median(ours) / median(base));
}

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    using namespace corvel;
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100'000;
    const BenchFolder folder;
    LibraryGenerator().copyStore(count, folder.path());
    PersistenceController controller(PersistenceController::Storage::onDisk, folder.path());
    Library library(controller);
    TitleIndex index(controller.viewContext(), library.notes);
    const auto start = Clock::now();
    index.refresh();
    std::printf("%zu titles, %.1f MB; read and folded in %.1f ms; %.1f MB of memory\n",
                index.titles().size(), static_cast<double>(index.titles().text().size()) / 1e6,
                microsecondsSince(start) / 1e3,
                static_cast<double>(index.titles().memoryInBytes()) / 1e6);
    for (const char* typed : {"", "e", "z", "q", "pl", "ie", "zq", "plan", "prz", "ntk", "notatka",
                              "praca dom", "wyjazd nad morze", "qwxyz", "aeiou", "iea", "a e"}) {
        run(index, typed);
    }
}
