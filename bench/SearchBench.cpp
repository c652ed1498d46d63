// Search over a library in memory beside what else could be done with the same folded texts: a scan
// by SQLite's LIKE, and four passes of memchr. Prints one line a query; the ratios are what counts.
#include "library/FoldedNote.h"
#include "library/SearchIndex.h"
#include "model/Schema.h"
#include "model/ViewContext.h"
#include "support/BenchFolder.h"
#include "support/LibraryGenerator.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace corvel {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::size_t kHits = 200;
constexpr int kRounds = 5;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

template <typename Work>
double medianOf(Work&& work) {
    std::vector<double> times;
    for (int i = 0; i < kRounds; ++i) {
        const auto start = Clock::now();
        work();
        times.push_back(millisecondsSince(start));
    }
    std::sort(times.begin(), times.end());
    return times[kRounds / 2];
}

class SearchBench {
public:
    explicit SearchBench(std::size_t count) : m_context(m_database), m_index(m_context) {
        schema::migrate(m_database);
        m_database.execute("CREATE TABLE folded(text TEXT)");
        m_database.execute("BEGIN");
        const LibraryGenerator generator;
        for (std::size_t i = 0; i < count; ++i)
            add(generator.generateNote(i), static_cast<RowId>(i));
        m_database.execute("COMMIT");
        fill();
    }

    void run(const char* query) {
        std::vector<RowId> hits;
        const double sweep = medianOf([&] {
            hits.clear();
            const auto search = m_index.search(query);
            while (!search->isFinished() && hits.size() < kHits) {
                const auto more = search->next(kHits - hits.size(), 8ms);
                hits.insert(hits.end(), more.begin(), more.end());
            }
        });
        std::size_t likeHits = 0;
        const double like = medianOf([&] { likeHits = countByLike(query); });
        const double passes = medianOf([&] {
            for (const char byte : {'\x01', '\x02', '\x03', '\x04'}) {
                if (std::memchr(m_all.data(), byte, m_all.size()) != nullptr) std::abort();
            }
        });
        if (likeHits != hits.size()) std::abort();
        std::printf(
            "%-16s hits %3zu  sweep %8.3f ms  LIKE %8.2f ms (x%.4f)  4 memchr %7.2f ms (x%.3f)\n",
            query, hits.size(), sweep, like, sweep / like, passes, sweep / passes);
    }

private:
    // Notes are made newest first, so that LIKE, too, may stop at the hits wanted.
    void add(const Note& note, RowId number) {
        m_database.query("INSERT INTO note(pk, id, title, modifiedAt) VALUES(?,?,?,?)")
            .bind(number + 1, note.id, note.title, std::int64_t{1'000'000'000} - number)
            .run();
        m_database.query("INSERT INTO noteContent(notePk, content) VALUES(?,?)")
            .bind(number + 1, note.content)
            .run();
        auto text = FoldedNote::textOf(note.title, note.content);
        m_all += text;
        // Text in SQLite has no such byte.
        std::replace(text.begin(), text.end(), FoldedNote::kEnd, '\x1F');
        m_database.query("INSERT INTO folded(text) VALUES(?)").bind(text).run();
        m_storedBytes += note.title.size() + note.content.size();
    }

    void fill() {
        const auto start = Clock::now();
        double longest = 0;
        for (bool goesOn = true; goesOn;) {
            const auto slice = Clock::now();
            goesOn = m_index.work(8ms);
            longest = std::max(longest, millisecondsSince(slice));
        }
        std::printf(
            "texts %.1f MB, folded %.1f MB, index %.1f MB; filled in %.0f ms, longest of the"
            " slices of 8 ms: %.1f ms\n",
            static_cast<double>(m_storedBytes) / 1e6, static_cast<double>(m_all.size()) / 1e6,
            static_cast<double>(m_index.memoryInBytes()) / 1e6, millisecondsSince(start), longest);
    }

    std::size_t countByLike(const std::string& query) {
        auto rows = m_database.query("SELECT rowid FROM folded WHERE text LIKE ? LIMIT 200");
        const std::string pattern = "%" + query + "%";
        rows.bind(pattern);
        std::size_t count = 0;
        while (rows.next())
            ++count;
        return count;
    }

    // In a file, as a library is; it is small enough for the system to keep it in memory.
    BenchFolder m_folder;
    Database m_database{m_folder.path() / "notes.sqlite"};
    ViewContext m_context;
    SearchIndex m_index;
    std::string m_all;
    std::size_t m_storedBytes = 0;
};

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100'000;
    corvel::SearchBench bench(count);
    for (const char* query : {"ie", "a ", "nie", "praca", "the ", "e a", "zq", "xqz", "qwxyz",
                              "iezna", "aeiouaeiou", "ie ie ie", "zapomnianego"}) {
        bench.run(query);
    }
}
