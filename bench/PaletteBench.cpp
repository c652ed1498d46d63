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
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvel {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kRows = 50;
constexpr int kRounds = 31;
constexpr int kDraws = 500;
constexpr std::size_t kAgain = 100;
constexpr std::size_t kWorst = 8;

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

struct Times {
    double ours;
    double base;
    std::size_t hits;
    double ratio() const { return ours / base; }
};

/// Medians, taken by turns.
Times measure(const TitleIndex& index, const std::string& typed, int rounds) {
    std::vector<double> ours;
    std::vector<double> base;
    std::size_t hits = 0;
    for (int round = 0; round < rounds; ++round) {
        auto start = Clock::now();
        hits = index.search(FuzzyQuery(typed), kRows).size();
        ours.push_back(microsecondsSince(start));
        start = Clock::now();
        if (passes(index.titles().text()) != 0) std::abort();
        base.push_back(microsecondsSince(start));
    }
    return {median(ours), median(base), hits};
}

void print(const std::string& typed, const Times& times) {
    std::printf("%-16s %3zu rows  %8.1f us  four passes %8.1f us  ratio %.2f\n", typed.c_str(),
                times.hits, times.ours, times.base, times.ratio());
}

/// One letter again and again is the hardest for a filter; the others are letters of titles as they
/// come, and any letters.
std::vector<std::string> manyQueries(std::string_view titles) {
    std::vector<std::string> queries;
    std::mt19937 random(7);
    const auto anyLetter = [&] { return static_cast<char>('a' + random() % 26); };
    const auto titleLetter = [&] {
        const char letter = titles[random() % titles.size()];
        return letter == '\n' ? ' ' : letter;
    };
    for (std::size_t length = 1; length <= 6; ++length) {
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            queries.emplace_back(length, letter);
        }
        for (int i = 0; i < kDraws; ++i) {
            std::string typed;
            while (typed.size() < length) {
                typed += i % 2 == 0 ? anyLetter() : titleLetter();
            }
            queries.push_back(std::move(typed));
        }
    }
    return queries;
}

using Measured = std::pair<double, std::string>;  // a ratio and its query

void runMany(const TitleIndex& index) {
    std::vector<Measured> measured;
    for (const auto& typed : manyQueries(index.titles().text())) {
        measured.emplace_back(measure(index, typed, 5).ratio(), typed);
    }
    std::ranges::sort(measured, std::ranges::greater());
    const auto at = [&](std::size_t percent) {
        return measured[(measured.size() - 1) * (100 - percent) / 100].first;
    };
    std::printf("%zu queries of 1 to 6 letters: median %.2f, 90%% %.2f, 99%% %.2f; the worst:\n",
                measured.size(), at(50), at(90), at(99));
    // What was only disturbed falls back when it is measured again.
    measured.resize(kAgain);
    for (auto& [ratio, typed] : measured) {
        ratio = measure(index, typed, kRounds).ratio();
    }
    std::ranges::sort(measured, std::ranges::greater());
    for (std::size_t i = 0; i < kWorst; ++i) {
        print(measured[i].second, measure(index, measured[i].second, kRounds));
    }
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
        print(typed, measure(index, typed, kRounds));
    }
    runMany(index);
}
